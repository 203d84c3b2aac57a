// The tabrino command-line tool: each command lives in its own Cmd*.cpp and
// registers itself on the application through one Add*Command function,
// listed in main.cpp.
#pragma once

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <string>

namespace TabrinoCli {

// Thrown by a command to end the process with one clear line on stderr.
// Exit code 2 is for bad arguments, 1 for everything that went wrong later.
class TCliError : public std::runtime_error {
 public:
  TCliError(const std::string& Message, int ExitCode) : std::runtime_error(Message), FExitCode(ExitCode) {}
  int ExitCode() const { return FExitCode; }

 private:
  int FExitCode;
};

inline TCliError UsageError(const std::string& Message) { return TCliError(Message, 2); }
inline TCliError Failure(const std::string& Message) { return TCliError(Message, 1); }

void AddFormatCommand(CLI::App& App);
void AddConvertCommand(CLI::App& App);
void AddTokensCommand(CLI::App& App);
void AddParseCommand(CLI::App& App);
void AddCalcCommand(CLI::App& App);
void AddEvalCommand(CLI::App& App);
void AddFunctionsCommand(CLI::App& App);

}  // namespace TabrinoCli
