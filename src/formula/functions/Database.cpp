// Database functions: DSUM(database, field, criteria) and its kin. The
// database is a range whose first row holds the field names and whose other
// rows are the records. The field is a name from that row, compared ignoring
// case, or a 1-based column number. The criteria are a range of the same
// kind: a header row of field names and one or more rows of criteria. A
// record matches a criteria row when it passes every criterion in it (AND),
// and is selected when it matches any row (OR). Each criterion cell goes
// through the matcher of the conditional aggregates; an empty one lets every
// record pass.
#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "Tabrino.Formula.Criterion.h"
#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// A cell of a range argument, without the copy that CellAt makes.
const TCellValue& At(const TFormulaArg& Range, int32_t Row, int32_t Col) {
  return Range.Cells[static_cast<size_t>(Row) * Range.ColCount + Col];
}

bool IsBlank(const TCellValue& V) {
  return V.Kind == cvkEmpty || (V.Kind == cvkText && V.Text.empty());
}

// The database column whose header reads Name, ignoring case.
std::optional<int32_t> HeaderColumn(const TFormulaArg& Database, const TCellValue& Name) {
  if (IsBlank(Name)) return std::nullopt;
  std::string Text = Name.ToDisplayString();
  for (int32_t Col = 0; Col < Database.ColCount; ++Col)
    if (DisplayEqualsNoCase(At(Database, 0, Col), Text)) return Col;
  return std::nullopt;
}

// One criteria row: the criteria by database column. A criterion under a
// header that names no field lets no record pass.
struct TCriteriaRow {
  std::vector<std::pair<int32_t, TCriterion>> Tests;
  bool Impossible = false;

  bool Matches(const TFormulaArg& Database, int32_t Record) const {
    if (Impossible) return false;
    for (const auto& [Col, Criterion] : Tests)
      if (!Criterion.Matches(At(Database, Record, Col))) return false;
    return true;
  }
};

std::vector<TCriteriaRow> ReadCriteria(const TFormulaArg& Database, const TFormulaArg& Criteria) {
  std::vector<std::optional<int32_t>> Columns;
  for (int32_t Col = 0; Col < Criteria.ColCount; ++Col) Columns.push_back(HeaderColumn(Database, At(Criteria, 0, Col)));
  std::vector<TCriteriaRow> Rows(Criteria.RowCount - 1);
  for (int32_t Row = 1; Row < Criteria.RowCount; ++Row) {
    for (int32_t Col = 0; Col < Criteria.ColCount; ++Col) {
      const TCellValue& Cell = At(Criteria, Row, Col);
      if (IsBlank(Cell)) continue;
      TCriteriaRow& Target = Rows[Row - 1];
      if (Columns[Col])
        Target.Tests.emplace_back(*Columns[Col], TCriterion(Cell.ToDisplayString()));
      else
        Target.Impossible = true;
    }
  }
  return Rows;
}

// The matching records: their number, and the field's value for each in
// order unless the field was left out where that is allowed (the counts).
struct TSelection {
  TCellErrorCode Error = ceNone;
  bool HasField = false;
  std::vector<TCellValue> Values;
  size_t Records = 0;
};

constexpr int32_t NoField = -1;

TCellErrorCode FieldColumn(const TFormulaArg& Database, const TFormulaArg& Field, bool MayBeOmitted, int32_t& Column) {
  TCellValue V = Field.First();
  switch (V.Kind) {
    case cvkEmpty: {
      // Left out of the call, not a reference to an empty cell.
      bool Omitted = !Field.IsRange && !Field.HasOrigin;
      Column = NoField;
      return MayBeOmitted && Omitted ? ceNone : ceValue;
    }
    case cvkNumber: {
      double N = std::trunc(V.Number);
      if (!(N >= 1 && N <= Database.ColCount)) return ceValue;
      Column = static_cast<int32_t>(N) - 1;
      return ceNone;
    }
    case cvkText: {
      std::optional<int32_t> Col = HeaderColumn(Database, V);
      Column = Col.value_or(NoField);
      return Col ? ceNone : ceValue;
    }
    default: return ceValue;
  }
}

TSelection Select(const TFunctionCall& C, bool FieldMayBeOmitted = false) {
  TSelection Result;
  const TFormulaArg& Database = C[0];
  const TFormulaArg& Criteria = C[2];
  int32_t Column = NoField;
  auto IsTable = [](const TFormulaArg& A, int32_t MinRows) {
    return A.IsRange && A.RowCount >= MinRows && A.Cells.size() == static_cast<size_t>(A.RowCount) * A.ColCount;
  };
  if (!IsTable(Database, 1) || !IsTable(Criteria, 2)) {
    Result.Error = ceValue;
    return Result;
  }
  Result.Error = FieldColumn(Database, C[1], FieldMayBeOmitted, Column);
  if (Result.Error != ceNone) return Result;
  Result.HasField = Column != NoField;
  std::vector<TCriteriaRow> Rows = ReadCriteria(Database, Criteria);
  for (int32_t Record = 1; Record < Database.RowCount; ++Record) {
    bool Selected =
        std::any_of(Rows.begin(), Rows.end(), [&](const TCriteriaRow& Row) { return Row.Matches(Database, Record); });
    if (!Selected) continue;
    ++Result.Records;
    if (Result.HasField) Result.Values.push_back(At(Database, Record, Column));
  }
  return Result;
}

// The numbers among the selected values; text, booleans, errors and empty
// cells are skipped as SUM skips them.
std::vector<double> Numbers(const TSelection& S) {
  std::vector<double> Out;
  for (const TCellValue& V : S.Values)
    if (V.Kind == cvkNumber) Out.push_back(V.Number);
  return Out;
}

double Sum(const std::vector<double>& X) {
  double S = 0;
  for (double V : X) S += V;
  return S;
}

// Sum of squared deviations from the mean, in two passes for accuracy.
double SquaredDeviations(const std::vector<double>& X) {
  double Mean = Sum(X) / X.size(), S = 0;
  for (double V : X) S += (V - Mean) * (V - Mean);
  return S;
}

// A rule over the numbers of the selection; an overflow is #NUM!.
template <TCellValue (*Rule)(const std::vector<double>&)>
TCellValue OverNumbers(const TFunctionCall& C) {
  TSelection S = Select(C);
  if (S.Error != ceNone) return Err(S.Error);
  TCellValue Result = Rule(Numbers(S));
  return Result.Kind == cvkNumber && !std::isfinite(Result.Number) ? Err(ceNum) : Result;
}

TCellValue SumRule(const std::vector<double>& X) {
  return Num(Sum(X));
}
TCellValue AverageRule(const std::vector<double>& X) {
  return X.empty() ? Err(ceDiv0) : Num(Sum(X) / X.size());
}
TCellValue MaxRule(const std::vector<double>& X) {
  return Num(X.empty() ? 0 : *std::max_element(X.begin(), X.end()));
}
TCellValue MinRule(const std::vector<double>& X) {
  return Num(X.empty() ? 0 : *std::min_element(X.begin(), X.end()));
}
TCellValue ProductRule(const std::vector<double>& X) {
  double P = 1;
  for (double V : X) P *= V;
  return Num(X.empty() ? 0 : P);
}
// Variance of a sample (Sample) or of the whole population.
template <bool Sample, bool Root>
TCellValue VarianceRule(const std::vector<double>& X) {
  size_t N = X.size();
  size_t Divisor = Sample ? (N > 0 ? N - 1 : 0) : N;
  if (Divisor == 0) return Err(ceDiv0);
  double Variance = SquaredDeviations(X) / Divisor;
  return Num(Root ? std::sqrt(Variance) : Variance);
}

TCellValue DCount(const TFunctionCall& C) {
  TSelection S = Select(C, true);
  if (S.Error != ceNone) return Err(S.Error);
  return Num(static_cast<double>(S.HasField ? Numbers(S).size() : S.Records));
}

TCellValue DCountA(const TFunctionCall& C) {
  TSelection S = Select(C, true);
  if (S.Error != ceNone) return Err(S.Error);
  if (!S.HasField) return Num(static_cast<double>(S.Records));
  return Num(static_cast<double>(
      std::count_if(S.Values.begin(), S.Values.end(), [](const TCellValue& V) { return V.Kind != cvkEmpty; })));
}

// The field of the one matching record: none is #VALUE!, several #NUM!.
TCellValue DGet(const TFunctionCall& C) {
  TSelection S = Select(C);
  if (S.Error != ceNone) return Err(S.Error);
  if (S.Values.empty()) return Err(ceValue);
  return S.Values.size() > 1 ? Err(ceNum) : S.Values.front();
}

}  // namespace

std::span<const TFunctionDef> DatabaseFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"DAVERAGE", 3, 3, fnNone, OverNumbers<AverageRule>},
      {"DCOUNT", 3, 3, fnNone, DCount},
      {"DCOUNTA", 3, 3, fnNone, DCountA},
      {"DGET", 3, 3, fnNone, DGet},
      {"DMAX", 3, 3, fnNone, OverNumbers<MaxRule>},
      {"DMIN", 3, 3, fnNone, OverNumbers<MinRule>},
      {"DPRODUCT", 3, 3, fnNone, OverNumbers<ProductRule>},
      {"DSTDEV", 3, 3, fnNone, OverNumbers<VarianceRule<true, true>>},
      {"DSTDEVP", 3, 3, fnNone, OverNumbers<VarianceRule<false, true>>},
      {"DSUM", 3, 3, fnNone, OverNumbers<SumRule>},
      {"DVAR", 3, 3, fnNone, OverNumbers<VarianceRule<true, false>>},
      {"DVARP", 3, 3, fnNone, OverNumbers<VarianceRule<false, false>>},
  };
  return Table;
}

}  // namespace Tabrino
