// The in-memory document: sheets, style sheet, theme, named formulas and the
// modified state. It holds no reference to an evaluator; hosts create one on
// a workbook and tell it of changes.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Tabrino.StyleSheet.h"
#include "Tabrino.Theme.h"
#include "Tabrino.Worksheet.h"

namespace Tabrino {

class TWorkbook;
using TWorkbookModifiedEvent = std::function<void(TWorkbook& Sender)>;
using TSheetAddedEvent = std::function<void(TWorksheet& Sheet)>;

class TWorkbook {
 public:
  std::vector<std::unique_ptr<TWorksheet>> FSheets;
  int32_t FActiveSheetIndex = 0;
  TTabrinoStyleSheet FStyleSheet;
  TTabrinoTheme FTheme;
  bool FModified = false;
  std::map<std::string, std::string> FNamedFormulas;  // upper-case name -> "=..." formula
  int32_t FUpdateLock = 0;
  bool FPendingModified = false;
  bool FStructureProtected = false;
  TWorkbookModifiedEvent FOnModified;
  // Fired by AddSheet once the new sheet's FOnChange is in place, so that a
  // listener on every sheet can hook the new one too.
  TSheetAddedEvent FOnSheetAdded;
  std::map<std::string, std::string> FWebCache;

  TWorkbook() { NewWorkbook(); }
  TWorkbook(const TWorkbook&) = delete;
  TWorkbook& operator=(const TWorkbook&) = delete;

  void NewWorkbook();
  // Takes the name as given: no uniqueness test and no modified mark.
  TWorksheet* AddSheet(const std::string& Name);
  void RemoveSheet(int32_t Index);
  int32_t SheetCount() const { return static_cast<int32_t>(FSheets.size()); }
  TWorksheet* GetSheet(int32_t Index) const;
  TWorksheet* ActiveSheet() const { return GetSheet(FActiveSheetIndex); }
  void SetActiveSheetIndex(int32_t Index);
  TWorksheet* FindSheet(const std::string& Name) const;
  // Index of Sheet in this workbook, -1 when it is not one of ours.
  int32_t IndexOfSheet(const TWorksheet* Sheet) const;

  int32_t VisibleSheetCount() const;
  int32_t FirstVisibleSheetIndex() const;
  void EnsureActiveSheetVisible();
  // Raises EException "Cannot hide the only visible worksheet".
  void SetSheetVisibility(int32_t Index, TSheetVisibility Value);

  void SetNamedFormula(const std::string& Name, const std::string& Formula);
  bool FindNamedFormula(const std::string& Name, std::string& Formula) const;
  void ClearNamedFormulas() { FNamedFormulas.clear(); }

  bool TryGetWebCache(const std::string& Key, std::string& Value) const;
  void PutWebCache(const std::string& Key, const std::string& Value) { FWebCache[Key] = Value; }
  void ClearWebCache() { FWebCache.clear(); }

  // Update brackets hold back FOnModified only (not recalculation): one event
  // fires at the outermost EndUpdate if anything changed inside.
  void BeginUpdate() { ++FUpdateLock; }
  void EndUpdate();
  bool IsUpdating() const { return FUpdateLock > 0; }
  void MarkModified();
  void ClearModified() { FModified = FPendingModified = false; }

  void SheetChanged(TWorksheet& Sender, const TCellAddress& Address, const TCell& OldCell, const TCell& NewCell);
};

// The key under which named formulas are stored: trimmed, "$" removed, upper case.
std::string NamedFormulaKey(const std::string& Name);

}  // namespace Tabrino
