#include <exception>
#include <iostream>

#include "Commands.h"
#include "Tabrino.Types.h"

int main(int argc, char** argv) {
  using namespace TabrinoCli;
  CLI::App App{"tabrino: calculate, format and convert spreadsheets from the command line"};
  App.name("tabrino");
  App.require_subcommand(1);
  App.set_help_all_flag("--help-all", "Show the help of every command");

  AddFormatCommand(App);
  AddConvertCommand(App);
  AddTokensCommand(App);
  AddParseCommand(App);
  AddCalcCommand(App);
  AddEvalCommand(App);
  AddFunctionsCommand(App);

  try {
    App.parse(argc, argv);
  } catch (const CLI::CallForHelp& Help) {
    return App.exit(Help);
  } catch (const CLI::CallForAllHelp& Help) {
    return App.exit(Help);
  } catch (const CLI::ParseError& Error) {
    std::cerr << "tabrino: " << Error.what() << " (see tabrino --help)\n";
    return 2;
  } catch (const TCliError& Error) {
    std::cerr << "tabrino: " << Error.what() << "\n";
    return Error.ExitCode();
  } catch (const Tabrino::EException& Error) {
    std::cerr << "tabrino: " << Error.what() << "\n";
    return 1;
  } catch (const std::exception& Error) {
    std::cerr << "tabrino: internal error: " << Error.what() << "\n";
    return 1;
  }
  return 0;
}
