// The worksheet's cell dictionary. Cells are kept by (column, row) in blocks
// of rows (TCellBlockMap), and each stored record is 12 bytes: a plain number,
// boolean or error lives inline; text points to its string; a plain formula
// points to its text and cached result; anything richer (format overrides,
// rich text, sparklines) points to an out-of-line record that exists only for
// such cells. Callers see whole TCell copies; the evaluator reads through the
// lighter accessors.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "Tabrino.Cell.h"
#include "Tabrino.CellBlocks.h"
#include "Tabrino.Formula.TreeCache.h"

namespace Tabrino {

struct TCellKey {
  int32_t Col;
  int32_t Row;
  bool operator==(const TCellKey&) const = default;
  template <typename H>
  friend H AbslHashValue(H State, const TCellKey& K) {
    return H::combine(std::move(State), K.Col, K.Row);
  }
};

class TStoredCell {
 public:
  static TStoredCell FromCell(const TCell& Cell);
  TStoredCell(TStoredCell&& Other) noexcept;
  TStoredCell& operator=(TStoredCell&& Other) noexcept;
  TStoredCell(const TStoredCell&) = delete;
  TStoredCell& operator=(const TStoredCell&) = delete;
  ~TStoredCell() { Release(); }

  TCell ToCell() const;
  // The same as assigning ToCell(), reusing Out's buffers: no allocation
  // once Out has held a cell of this size.
  void CopyTo(TCell& Out) const;
  TCellValueKind Kind() const;
  int32_t StyleIndex() const;
  double Number() const;             // cvkNumber only
  bool Boolean() const;              // cvkBoolean only
  TCellErrorCode Error() const;      // cvkError only
  const std::string& Text() const;   // cvkText only
  std::string_view Formula() const;  // cvkFormula only
  bool HasCachedValue() const;
  const TCellValue* CachedValue() const;      // nullptr without a cache
  const TCellFormat* FormatOverride() const;  // nullptr without one
  // Replaces a formula's cached result where it lies; false when the cell
  // holds no formula. Equivalent to storing the cell again with that cache.
  bool HasRichText() const;
  bool HasSparkline() const;
  std::string RichTextPlain() const;
  TCellValue Value() const;
  bool SetCachedResult(const TCellValue& Value);
  // The parsed tree of a plain formula standing at (Col, Row), kept with its
  // text once looked up. The record goes whenever the cell is stored again,
  // so a kept tree can never outlive its text; nullptr when none is kept.
  const TSharedTree* KeptTree(int32_t Col, int32_t Row) const;
  void KeepTree(const TSharedTree& Tree, int32_t Col, int32_t Row) const;

 private:
  template <typename, typename>
  friend class TCellBlockMap;  // holds default-made, empty records in its blocks
  enum TLayout : uint8_t { lyStyleOnly, lyNumber, lyBoolean, lyError, lyText, lyFormula, lyRecord };
  struct TRecord;
  struct TFormulaRecord;
  static constexpr uint32_t StyleBits = 24;
  static constexpr uint32_t StyleMask = (1u << StyleBits) - 1;

  TStoredCell() = default;
  TLayout Layout() const { return static_cast<TLayout>(FStyleAndLayout >> StyleBits); }
  void SetLayout(TLayout Layout, int32_t Style) { FStyleAndLayout = (uint32_t(Layout) << StyleBits) | uint32_t(Style); }
  template <typename T>
  T Payload() const {
    T V;
    std::memcpy(&V, FPayload, sizeof V);
    return V;
  }
  template <typename T>
  void SetPayload(T V) {
    std::memcpy(FPayload, &V, sizeof V);
  }
  const TRecord& Record() const { return *Payload<TRecord*>(); }
  const TFormulaRecord& FormulaRecord() const { return *Payload<TFormulaRecord*>(); }
  void Release();

  // Two 32-bit words instead of one 64-bit field keep the record 4-byte
  // aligned, so a map slot is 20 bytes rather than 24.
  uint32_t FPayload[2] = {0, 0};
  uint32_t FStyleAndLayout = 0;
};

// The sheet's cells by (column, row).
using TCellMap = TCellBlockMap<TCellKey, TStoredCell>;

}  // namespace Tabrino
