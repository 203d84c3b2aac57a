// tabrino functions [--category NAME] [--missing]
#include <algorithm>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "Commands.h"
#include "Tabrino.Formula.Builtins.h"

namespace TabrinoCli {

extern const char* const FunctionCatalogueText;

namespace {

struct TCatalogueEntry {
  std::string Category;
  std::string MinArgs;
  std::string MaxArgs;
};

// Name -> entry, from the tab-separated catalogue (header line first).
std::map<std::string, TCatalogueEntry> ReadCatalogue() {
  std::map<std::string, TCatalogueEntry> Entries;
  std::istringstream Lines(FunctionCatalogueText);
  std::string Line;
  std::getline(Lines, Line);
  while (std::getline(Lines, Line)) {
    std::vector<std::string> Fields;
    std::istringstream Cells(Line);
    for (std::string Field; std::getline(Cells, Field, '\t');) Fields.push_back(Field);
    if (Fields.size() >= 4) Entries[Fields[0]] = {Fields[1], Fields[2], Fields[3]};
  }
  return Entries;
}

std::string CountText(int Count) { return Count < 0 ? "n" : std::to_string(Count); }

struct TFunctionsOptions {
  std::string Category;
  bool Missing = false;
};

void RunFunctions(const TFunctionsOptions& Options) {
  const auto Catalogue = ReadCatalogue();
  std::set<std::string> Known;
  for (const Tabrino::TFunctionDef* Def : Tabrino::AllFunctions()) Known.insert(Def->Name);
  auto CategoryOf = [&](const std::string& Name) {
    auto It = Catalogue.find(Name);
    return It == Catalogue.end() ? std::string("other") : It->second.Category;
  };
  if (!Options.Category.empty()) {
    bool Exists = std::any_of(Catalogue.begin(), Catalogue.end(),
                              [&](const auto& Entry) { return Entry.second.Category == Options.Category; });
    if (!Exists) throw UsageError("unknown category: " + Options.Category);
  }
  auto Selected = [&](const std::string& Name) { return Options.Category.empty() || CategoryOf(Name) == Options.Category; };

  if (Options.Missing) {
    for (const auto& [Name, Entry] : Catalogue)
      if (!Known.contains(Name) && Selected(Name)) std::cout << Name << "\t" << Entry.Category << "\n";
    return;
  }
  std::vector<const Tabrino::TFunctionDef*> All = Tabrino::AllFunctions();
  std::sort(All.begin(), All.end(), [](auto* A, auto* B) { return std::string_view(A->Name) < B->Name; });
  for (const Tabrino::TFunctionDef* Def : All) {
    if (!Selected(Def->Name)) continue;
    std::cout << Def->Name << "\t" << CategoryOf(Def->Name) << "\t" << Def->MinArgs << "\t" << CountText(Def->MaxArgs)
              << "\n";
  }
}

}  // namespace

void AddFunctionsCommand(CLI::App& App) {
  auto Options = std::make_shared<TFunctionsOptions>();
  CLI::App* Cmd = App.add_subcommand("functions", "List the built-in functions: name, category, min and max arguments");
  Cmd->add_option("--category", Options->Category, "Only this category (math, statistical, text, ...)");
  Cmd->add_flag("--missing", Options->Missing, "List the catalogued functions the engine does not know yet");
  Cmd->callback([Options] { RunFunctions(*Options); });
}

}  // namespace TabrinoCli
