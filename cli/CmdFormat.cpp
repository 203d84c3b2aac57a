// tabrino format VALUE FORMAT: the display text of a number under a
// spreadsheet number format, as a cell would show it.
#include <fmt/format.h>

#include <memory>
#include <string>

#include "Commands.h"
#include "Tabrino.NumberFormat.h"
#include "Tabrino.NumberParse.h"

namespace TabrinoCli {
namespace {

// A text format shows a text value as it is; every other format needs a number.
std::string FormattedValue(const std::string& Value, const std::string& Format) {
  double Number = 0;
  if (Tabrino::TryTextToFloat(Value, Number)) return Tabrino::FormatNumber(Number, Format);
  if (Tabrino::IsTextNumberFormat(Format)) return Value;
  throw UsageError("VALUE is not a number: \"" + Value + "\" (only the text format \"@\" takes text)");
}

}  // namespace

void AddFormatCommand(CLI::App& App) {
  auto Value = std::make_shared<std::string>();
  auto Format = std::make_shared<std::string>();
  CLI::App* Command = App.add_subcommand("format", "Format a number with a spreadsheet number format");
  Command->add_option("value", *Value, "Number in the current locale")->required();
  Command->add_option("format", *Format, "Number format, e.g. \"#,##0.00\" or \"yyyy-mm-dd\"")->required();
  Command->callback([Value, Format] { fmt::print("{}\n", FormattedValue(*Value, *Format)); });
}

}  // namespace TabrinoCli
