#include "Tabrino.CellStore.h"

#include <cstring>
#include <new>
#include <utility>

namespace Tabrino {

struct TStoredCell::TRecord {
  TCell Cell;
};

// A formula with only a style: the common case, a fraction of a full
// record. Its text follows the record in the same allocation, so that a
// formula costs one allocation and its text is read from memory next to its
// cached result.
struct TStoredCell::TFormulaRecord {
  TCellValue Cached;
  bool HasCached;
  // A cache of the evaluator's, valid for the cell it was kept at.
  mutable TSharedTree Tree;
  mutable int32_t TreeCol = 0;
  mutable int32_t TreeRow = 0;
  uint32_t Length = 0;

  std::string_view Text() const { return {reinterpret_cast<const char*>(this + 1), Length}; }

  static TFormulaRecord* Make(std::string_view Formula, const TCellValue& Cached, bool HasCached) {
    void* Memory = ::operator new(sizeof(TFormulaRecord) + Formula.size());
    auto* Record = new (Memory) TFormulaRecord{Cached, HasCached, {}, 0, 0, static_cast<uint32_t>(Formula.size())};
    std::memcpy(Record + 1, Formula.data(), Formula.size());
    return Record;
  }
  static void Destroy(TFormulaRecord* Record) {
    Record->~TFormulaRecord();
    ::operator delete(Record);
  }
};

TStoredCell TStoredCell::FromCell(const TCell& Cell) {
  TStoredCell S;
  const bool Styled = !Cell.HasFormatOverride && Cell.RichText.empty() && Cell.Sparkline.Kind == spkNone &&
                      Cell.Sparkline.Values.empty() && Cell.StyleIndex >= 0 &&
                      static_cast<uint32_t>(Cell.StyleIndex) <= StyleMask;
  const TCellValue& V = Cell.Value;
  const bool PlainFormula = V.Kind == cvkFormula && V.Text.empty() && V.Number == 0 && !V.BooleanValue &&
                            V.ErrorCode == ceNone && (V.Formula.empty() || V.Formula.front() == '=');
  if (Styled && PlainFormula) {
    S.SetLayout(lyFormula, Cell.StyleIndex);
    S.SetPayload(TFormulaRecord::Make(Cell.Value.Formula, Cell.CachedValue, Cell.HasCachedValue));
    return S;
  }
  if (Styled && !Cell.HasCachedValue) {
    switch (Cell.Value.Kind) {
      case cvkEmpty: S.SetLayout(lyStyleOnly, Cell.StyleIndex); return S;
      case cvkNumber:
        S.SetLayout(lyNumber, Cell.StyleIndex);
        S.SetPayload(Cell.Value.Number);
        return S;
      case cvkBoolean:
        S.SetLayout(lyBoolean, Cell.StyleIndex);
        S.SetPayload<uint32_t>(Cell.Value.BooleanValue);
        return S;
      case cvkError:
        S.SetLayout(lyError, Cell.StyleIndex);
        S.SetPayload<uint32_t>(Cell.Value.ErrorCode);
        return S;
      case cvkText:
        S.SetLayout(lyText, Cell.StyleIndex);
        S.SetPayload(new std::string(Cell.Value.Text));
        return S;
      case cvkFormula: break;
    }
  }
  S.SetLayout(lyRecord, 0);
  S.SetPayload(new TRecord{Cell});
  return S;
}

TStoredCell::TStoredCell(TStoredCell&& Other) noexcept
    : FPayload{Other.FPayload[0], Other.FPayload[1]}, FStyleAndLayout(Other.FStyleAndLayout) {
  Other.FStyleAndLayout = 0;
}

TStoredCell& TStoredCell::operator=(TStoredCell&& Other) noexcept {
  if (this != &Other) {
    Release();
    std::memcpy(FPayload, Other.FPayload, sizeof FPayload);
    FStyleAndLayout = Other.FStyleAndLayout;
    Other.FStyleAndLayout = 0;
  }
  return *this;
}

void TStoredCell::Release() {
  if (Layout() == lyText) delete Payload<std::string*>();
  if (Layout() == lyFormula) TFormulaRecord::Destroy(Payload<TFormulaRecord*>());
  if (Layout() == lyRecord) delete Payload<TRecord*>();
  FStyleAndLayout = 0;
}

TCellValueKind TStoredCell::Kind() const {
  switch (Layout()) {
    case lyNumber: return cvkNumber;
    case lyBoolean: return cvkBoolean;
    case lyError: return cvkError;
    case lyText: return cvkText;
    case lyFormula: return cvkFormula;
    case lyRecord: return Record().Cell.Value.Kind;
    default: return cvkEmpty;
  }
}

int32_t TStoredCell::StyleIndex() const {
  return Layout() == lyRecord ? Record().Cell.StyleIndex : static_cast<int32_t>(FStyleAndLayout & StyleMask);
}

double TStoredCell::Number() const {
  return Layout() == lyRecord ? Record().Cell.Value.Number : Payload<double>();
}

bool TStoredCell::Boolean() const {
  return Layout() == lyRecord ? Record().Cell.Value.BooleanValue : Payload<uint32_t>() != 0;
}

TCellErrorCode TStoredCell::Error() const {
  return Layout() == lyRecord ? Record().Cell.Value.ErrorCode : static_cast<TCellErrorCode>(Payload<uint32_t>());
}

const std::string& TStoredCell::Text() const {
  return Layout() == lyRecord ? Record().Cell.Value.Text : *Payload<std::string*>();
}

std::string_view TStoredCell::Formula() const {
  if (Layout() == lyFormula) return FormulaRecord().Text();
  return Layout() == lyRecord ? std::string_view(Record().Cell.Value.Formula) : std::string_view();
}

bool TStoredCell::HasCachedValue() const {
  if (Layout() == lyFormula) return FormulaRecord().HasCached;
  return Layout() == lyRecord && Record().Cell.HasCachedValue;
}

const TCellValue* TStoredCell::CachedValue() const {
  if (!HasCachedValue()) return nullptr;
  return Layout() == lyFormula ? &FormulaRecord().Cached : &Record().Cell.CachedValue;
}

const TCellFormat* TStoredCell::FormatOverride() const {
  return Layout() == lyRecord && Record().Cell.HasFormatOverride ? &Record().Cell.FormatOverride : nullptr;
}

const TSharedTree* TStoredCell::KeptTree(int32_t Col, int32_t Row) const {
  if (Layout() != lyFormula) return nullptr;
  const TFormulaRecord& R = FormulaRecord();
  return R.Tree.Tree && R.TreeCol == Col && R.TreeRow == Row ? &R.Tree : nullptr;
}

void TStoredCell::KeepTree(const TSharedTree& Tree, int32_t Col, int32_t Row) const {
  if (Layout() != lyFormula) return;
  const TFormulaRecord& R = FormulaRecord();
  R.Tree = Tree;
  R.TreeCol = Col;
  R.TreeRow = Row;
}

bool TStoredCell::SetCachedResult(const TCellValue& Value) {
  if (Layout() == lyFormula) {
    TFormulaRecord& R = *Payload<TFormulaRecord*>();
    R.Cached = CacheableResult(Value);
    R.HasCached = true;
    return true;
  }
  if (Layout() != lyRecord || Record().Cell.Value.Kind != cvkFormula) return false;
  Payload<TRecord*>()->Cell.SetCachedResult(Value);
  return true;
}

bool TStoredCell::HasRichText() const {
  return Layout() == lyRecord && !Record().Cell.RichText.empty();
}

bool TStoredCell::HasSparkline() const {
  return Layout() == lyRecord && Record().Cell.Sparkline.Kind != spkNone;
}

std::string TStoredCell::RichTextPlain() const {
  return Layout() == lyRecord ? Record().Cell.RichTextPlain() : std::string();
}

TCellValue TStoredCell::Value() const {
  switch (Layout()) {
    case lyNumber: return TCellValue::FromNumber(Payload<double>());
    case lyBoolean: return TCellValue::FromBoolean(Payload<uint32_t>() != 0);
    case lyError: return TCellValue::FromError(static_cast<TCellErrorCode>(Payload<uint32_t>()));
    case lyText: return TCellValue::FromText(*Payload<std::string*>());
    case lyFormula: return TCellValue::FromFormula(std::string(FormulaRecord().Text()));
    case lyRecord: return Record().Cell.Value;
    default: return TCellValue::Empty();
  }
}

TCell TStoredCell::ToCell() const {
  if (Layout() == lyRecord) return Record().Cell;
  TCell Cell;
  CopyTo(Cell);
  return Cell;
}

void TStoredCell::CopyTo(TCell& Out) const {
  if (Layout() == lyRecord) {
    Out = Record().Cell;
    return;
  }
  // A compact cell has nothing but a value, a style and a formula's cache.
  if (Out.HasFormatOverride || !Out.RichText.empty() || Out.Sparkline.Kind != spkNone || !Out.Sparkline.Values.empty())
    Out = TCell();
  auto Assign = [](TCellValue& V, TCellValueKind Kind, double Number, bool Boolean, TCellErrorCode Error,
                   std::string_view Text, std::string_view Formula) {
    V.Kind = Kind;
    V.Number = Number;
    V.BooleanValue = Boolean;
    V.ErrorCode = Error;
    V.Text.assign(Text);
    V.Formula.assign(Formula);
  };
  switch (Layout()) {
    case lyNumber: Assign(Out.Value, cvkNumber, Payload<double>(), false, ceNone, {}, {}); break;
    case lyBoolean: Assign(Out.Value, cvkBoolean, 0, Payload<uint32_t>() != 0, ceNone, {}, {}); break;
    case lyError: Assign(Out.Value, cvkError, 0, false, Error(), {}, {}); break;
    case lyText: Assign(Out.Value, cvkText, 0, false, ceNone, *Payload<std::string*>(), {}); break;
    case lyFormula: Assign(Out.Value, cvkFormula, 0, false, ceNone, {}, FormulaRecord().Text()); break;
    default: Assign(Out.Value, cvkEmpty, 0, false, ceNone, {}, {}); break;
  }
  Out.StyleIndex = StyleIndex();
  if (Layout() == lyFormula && FormulaRecord().HasCached) {
    Out.CachedValue = FormulaRecord().Cached;
    Out.HasCachedValue = true;
  } else {
    Assign(Out.CachedValue, cvkEmpty, 0, false, ceNone, {}, {});
    Out.HasCachedValue = false;
  }
}

}  // namespace Tabrino
