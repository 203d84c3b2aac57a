#include "Tabrino.Workbook.h"

#include <absl/strings/match.h>

#include <algorithm>

#include "Tabrino.TextUtil.h"

namespace Tabrino {

void TWorkbook::NewWorkbook() {
  FSheets.clear();
  AddSheet("Sheet1");
  FActiveSheetIndex = 0;
  FStyleSheet.Clear();
  FTheme.SetDefaultOfficeTheme();
  FNamedFormulas.clear();
  FWebCache.clear();
  FModified = false;
  FUpdateLock = 0;
  FPendingModified = false;
  FStructureProtected = false;
}

TWorksheet* TWorkbook::AddSheet(const std::string& Name) {
  auto Sheet = std::make_unique<TWorksheet>(Name);
  Sheet->FOnChange = [this](TWorksheet& Sender, const TCellAddress& Address, const TCell& OldCell,
                            const TCell& NewCell) { SheetChanged(Sender, Address, OldCell, NewCell); };
  FSheets.push_back(std::move(Sheet));
  if (FOnSheetAdded) FOnSheetAdded(*FSheets.back());
  return FSheets.back().get();
}

void TWorkbook::RemoveSheet(int32_t Index) {
  if (Index < 0 || Index >= SheetCount()) return;
  FSheets.erase(FSheets.begin() + Index);
  // Deliberately not decremented when an earlier sheet goes: the next sheet
  // becomes the active one.
  if (FActiveSheetIndex >= SheetCount()) FActiveSheetIndex = std::max(0, SheetCount() - 1);
  MarkModified();
}

TWorksheet* TWorkbook::GetSheet(int32_t Index) const {
  return Index >= 0 && Index < SheetCount() ? FSheets[Index].get() : nullptr;
}

void TWorkbook::SetActiveSheetIndex(int32_t Index) {
  if (Index >= 0 && Index < SheetCount()) FActiveSheetIndex = Index;
}

TWorksheet* TWorkbook::FindSheet(const std::string& Name) const {
  for (const auto& Sheet : FSheets)
    if (absl::EqualsIgnoreCase(Sheet->FName, Name)) return Sheet.get();
  return nullptr;
}

int32_t TWorkbook::IndexOfSheet(const TWorksheet* Sheet) const {
  for (int32_t I = 0; I < SheetCount(); ++I)
    if (FSheets[I].get() == Sheet) return I;
  return -1;
}

int32_t TWorkbook::VisibleSheetCount() const {
  return static_cast<int32_t>(std::count_if(FSheets.begin(), FSheets.end(), [](const auto& S) { return S->IsVisible(); }));
}

int32_t TWorkbook::FirstVisibleSheetIndex() const {
  for (int32_t I = 0; I < SheetCount(); ++I)
    if (FSheets[I]->IsVisible()) return I;
  return -1;
}

void TWorkbook::EnsureActiveSheetVisible() {
  if (TWorksheet* Active = ActiveSheet(); Active && Active->IsVisible()) return;
  int32_t First = FirstVisibleSheetIndex();
  if (First >= 0)
    FActiveSheetIndex = First;
  else if (SheetCount() > 0)
    FActiveSheetIndex = 0;
}

void TWorkbook::SetSheetVisibility(int32_t Index, TSheetVisibility Value) {
  TWorksheet* Sheet = GetSheet(Index);
  if (!Sheet || Sheet->FVisibility == Value) return;
  if (Value != svVisible && Sheet->IsVisible() && VisibleSheetCount() < 2)
    throw EException("Cannot hide the only visible worksheet");
  Sheet->FVisibility = Value;
  if (Index == FActiveSheetIndex && !Sheet->IsVisible()) EnsureActiveSheetVisible();
  MarkModified();
}

std::string NamedFormulaKey(const std::string& Name) {
  return UpperAscii(ReplaceAll(TrimBlanks(Name), "$", ""));
}

void TWorkbook::SetNamedFormula(const std::string& Name, const std::string& Formula) {
  std::string Key = NamedFormulaKey(Name);
  if (Key.empty()) return;
  std::string Text(TrimBlanks(Formula));
  if (!Text.empty() && Text.front() != '=') Text.insert(Text.begin(), '=');
  FNamedFormulas[Key] = Text;
}

bool TWorkbook::FindNamedFormula(const std::string& Name, std::string& Formula) const {
  auto It = FNamedFormulas.find(NamedFormulaKey(Name));
  if (It == FNamedFormulas.end()) return false;
  Formula = It->second;
  return true;
}

bool TWorkbook::TryGetWebCache(const std::string& Key, std::string& Value) const {
  auto It = FWebCache.find(Key);
  if (It == FWebCache.end()) return false;
  Value = It->second;
  return true;
}

void TWorkbook::EndUpdate() {
  if (FUpdateLock == 0) return;
  if (--FUpdateLock == 0 && FPendingModified) {
    FPendingModified = false;
    FModified = true;
    if (FOnModified) FOnModified(*this);
  }
}

void TWorkbook::MarkModified() {
  FModified = true;
  if (IsUpdating()) {
    FPendingModified = true;
  } else if (FOnModified) {
    FOnModified(*this);
  }
}

void TWorkbook::SheetChanged(TWorksheet&, const TCellAddress&, const TCell&, const TCell&) { MarkModified(); }

}  // namespace Tabrino
