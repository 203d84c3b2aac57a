// Addresses, ranges, values and error codes: the plain records every other
// unit is built from. All coordinates are 1-based.
#pragma once

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Tabrino {

inline constexpr int32_t MaxCol = 16384;
inline constexpr int32_t MaxRow = 1048576;

// The one plain exception of the library; its message is shown to users as is.
class EException : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

std::string ColToLetters(int32_t Col);
int32_t LettersToCol(std::string_view Text);

struct TCellAddress {
  int32_t Col = 0;
  int32_t Row = 0;

  bool IsValid() const { return Col >= 1 && Col <= MaxCol && Row >= 1 && Row <= MaxRow; }
  std::string ToA1() const;
  std::string ToKey() const { return ToA1(); }
  static TCellAddress FromA1(std::string_view Text);
  static TCellAddress FromKey(std::string_view Key) { return FromA1(Key); }
  bool operator==(const TCellAddress&) const = default;
};

struct TCellRange {
  int32_t StartCol = 0;
  int32_t StartRow = 0;
  int32_t EndCol = 0;
  int32_t EndRow = 0;

  static TCellRange Make(int32_t C1, int32_t R1, int32_t C2, int32_t R2) { return {C1, R1, C2, R2}; }
  static TCellRange FromA1(std::string_view Text);
  TCellRange Normalize() const;
  // Inline: the dependency graph and range reads ask this millions of times.
  bool Contains(int32_t Col, int32_t Row) const {
    return Col >= std::min(StartCol, EndCol) && Col <= std::max(StartCol, EndCol) &&
           Row >= std::min(StartRow, EndRow) && Row <= std::max(StartRow, EndRow);
  }
  bool ContainsAddress(const TCellAddress& A) const { return Contains(A.Col, A.Row); }
  bool Intersects(const TCellRange& Other) const;
  int32_t Width() const;
  int32_t Height() const;
  std::string ToA1() const;
  bool operator==(const TCellRange&) const = default;
};

enum TCellValueKind : uint8_t { cvkEmpty, cvkText, cvkNumber, cvkBoolean, cvkError, cvkFormula };

enum TCellErrorCode : uint8_t { ceNone, ceDiv0, ceNA, ceName, ceNull, ceNum, ceRef, ceValue, ceCirc, ceSpill };

enum TTabrinoFileFormat : uint8_t { ffAuto, ffTbx, ffXlsx, ffOds, ffCsv };

enum TSheetVisibility : uint8_t { svVisible, svHidden, svVeryHidden };

std::string ErrorCodeToString(TCellErrorCode Code);
TTabrinoFileFormat FileFormatFromExtension(std::string_view FileName);

// Flat on purpose: one record for every kind, each factory setting its one field.
struct TCellValue {
  TCellValueKind Kind = cvkEmpty;
  bool BooleanValue = false;
  TCellErrorCode ErrorCode = ceNone;
  double Number = 0;
  std::string Text;
  std::string Formula;

  static TCellValue Empty() { return {}; }
  static TCellValue FromText(std::string Text);
  static TCellValue FromNumber(double Number);
  static TCellValue FromBoolean(bool Value);
  static TCellValue FromError(TCellErrorCode Code);
  static TCellValue FromFormula(std::string Text);

  bool IsEmpty() const { return Kind == cvkEmpty; }
  std::string ToDisplayString() const;
  bool operator==(const TCellValue&) const = default;
};

// General decimal text of a number with at most 15 significant digits and
// trailing fraction zeros stripped: the unformatted form used everywhere.
std::string GeneralNumberText(double Value);

// A number that compares to 0 does so with this tolerance throughout the system.
inline constexpr double ZeroTolerance = 1E-12;
inline bool IsZero(double V) { return V > -ZeroTolerance && V < ZeroTolerance; }

}  // namespace Tabrino
