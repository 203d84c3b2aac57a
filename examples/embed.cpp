// The embedding example of the README, built and run by the tests so that it
// stays true.
#include <cstdio>

#include "Tabrino.Formula.CalcSession.h"
#include "Tabrino.Workbook.h"

using namespace Tabrino;

int main() {
  TWorkbook Book;
  TCalcSession Session(Book);  // recalculates the dependents of every write
  TWorksheet& Sheet = *Book.ActiveSheet();
  Sheet.SetCell({1, 2}, TCell::WithValue(TCellValue::FromFormula("=A1*2")));
  TCell Styled = Sheet.GetCell({1, 2});
  Styled.HasFormatOverride = true;
  Styled.FormatOverride.NumberFormat = "#,##0.00";
  Sheet.SetCell({1, 2}, Styled);
  Sheet.SetCell({1, 1}, TCell::WithValue(TCellValue::FromNumber(1234.5)));  // A2 follows
  std::printf("%s\n", Sheet.GetDisplayText({1, 2}, &Book.FStyleSheet).c_str());  // 2,469.00
}
