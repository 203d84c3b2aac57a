#include "Tabrino.NumberFormat.h"

namespace Tabrino {

std::string BuiltInExcelNumberFormat(int32_t Id) {
  switch (Id) {
    case 1: return "0";
    case 2: return "0.00";
    case 3: return "#,##0";
    case 4: return "#,##0.00";
    case 5: return "$#,##0_);($#,##0)";
    case 6: return "$#,##0_);[Red]($#,##0)";
    case 7: return "$#,##0.00_);($#,##0.00)";
    case 8: return "$#,##0.00_);[Red]($#,##0.00)";
    case 9: return "0%";
    case 10: return "0.00%";
    case 11: return "0.00E+00";
    case 12: return "# ?/?";
    case 13: return "# ??/??";
    case 14: return "m/d/yyyy";
    case 15: return "d-mmm-yy";
    case 16: return "d-mmm";
    case 17: return "mmm-yy";
    case 18: return "h:mm AM/PM";
    case 19: return "h:mm:ss AM/PM";
    case 20: return "h:mm";
    case 21: return "h:mm:ss";
    case 22: return "m/d/yyyy h:mm";
    case 37: return "#,##0 ;(#,##0)";
    case 38: return "#,##0 ;[Red](#,##0)";
    case 39: return "#,##0.00;(#,##0.00)";
    case 40: return "#,##0.00;[Red](#,##0.00)";
    case 41: return R"(_(* #,##0_);_(* (#,##0);_(* "-"_);_(@_))";
    case 42: return R"(_($* #,##0_);_($* (#,##0);_($* "-"_);_(@_))";
    case 43: return R"(_(* #,##0.00_);_(* (#,##0.00);_(* "-"??_);_(@_))";
    case 44: return R"(_($* #,##0.00_);_($* (#,##0.00);_($* "-"??_);_(@_))";
    case 45: return "mm:ss";
    case 46: return "[h]:mm:ss";
    case 47: return "mmss.0";
    case 48: return "##0.0E+0";
    case 49: return "@";
    default: return "General";
  }
}

std::string FormatNumber(double Value, std::string_view /*Format*/) { return GeneralNumberText(Value); }

std::string FormatCellValue(const TCellValue& Value, std::string_view Format) {
  switch (Value.Kind) {
    case cvkText: return Value.Text;
    case cvkNumber: return FormatNumber(Value.Number, Format);
    case cvkBoolean: return Value.BooleanValue ? "TRUE" : "FALSE";
    case cvkError: return ErrorCodeToString(Value.ErrorCode);
    case cvkFormula: return Value.Formula;
    default: return {};
  }
}

bool NumberFormatColor(double /*Value*/, std::string_view /*Format*/, uint32_t& Color) {
  Color = 0xFF000000;
  return false;
}

bool TryFormatNumberFillSplit(double, std::string_view, std::string&, std::string&) { return false; }

bool IsTextNumberFormat(std::string_view Format) { return Format == "@" || Format == "Text"; }

}  // namespace Tabrino
