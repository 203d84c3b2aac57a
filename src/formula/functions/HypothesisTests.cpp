// Hypothesis tests and confidence intervals: Student's t tests (paired, equal
// and unequal variances), the F test of two variances, Pearson's chi-square
// test, the z test, and the half-widths of normal and t confidence
// intervals. Samples are read the way SUM reads them: cells count only when
// they hold numbers; a value typed into the call converts like any number.
#include <algorithm>
#include <cmath>
#include <vector>

#include "Tabrino.Formula.DistributionBuiltins.h"
#include "Tabrino.Formula.Distributions.h"

namespace Tabrino::DistributionBuiltins {

namespace {

// The numbers of one sample argument; false for a typed value that is no number.
bool ReadSample(const TFormulaArg& Arg, std::vector<double>& Sample) {
  if (!Arg.IsRange && !Arg.HasOrigin) {
    double Number;
    if (!ArgNumber(Arg, Number)) return false;
    Sample.push_back(Number);
    return true;
  }
  for (const TCellValue& Cell : ArgValues(Arg))
    if (Cell.Kind == cvkNumber) Sample.push_back(Cell.Number);
  return true;
}

struct TMoments {
  double Count = 0;
  double Mean = 0;
  double Variance = 0;  // of the sample, n - 1
};

// Mean and sample variance in two passes, the second corrected by the
// rounding the first pass left in the mean.
TMoments MomentsOf(const std::vector<double>& Sample) {
  TMoments M;
  M.Count = double(Sample.size());
  if (Sample.empty()) return M;
  double Sum = 0;
  for (double V : Sample) Sum += V;
  M.Mean = Sum / M.Count;
  double Squares = 0, Deviations = 0;
  for (double V : Sample) {
    Squares += (V - M.Mean) * (V - M.Mean);
    Deviations += V - M.Mean;
  }
  if (M.Count > 1) M.Variance = (Squares - Deviations * Deviations / M.Count) / (M.Count - 1);
  return M;
}

// The statistic and degrees of freedom of a t test; false when a sample is
// too small or has no spread (#DIV/0!).
struct TStudentStatistic {
  double T = 0;
  double Df = 0;
};

bool PairedStatistic(const TFormulaArg& First, const TFormulaArg& Second, TStudentStatistic& S, TCellErrorCode& Error) {
  std::span<const TCellValue> A = ArgValues(First), B = ArgValues(Second);
  if (A.size() != B.size()) {
    Error = ceNA;
    return false;
  }
  std::vector<double> Differences;
  for (size_t I = 0; I < A.size(); ++I)
    if (A[I].Kind == cvkNumber && B[I].Kind == cvkNumber) Differences.push_back(A[I].Number - B[I].Number);
  TMoments M = MomentsOf(Differences);
  Error = ceDiv0;
  if (M.Count < 2 || M.Variance <= 0) return false;
  S = {M.Mean / std::sqrt(M.Variance / M.Count), M.Count - 1};
  return true;
}

bool TwoSampleStatistic(const TMoments& A, const TMoments& B, bool EqualVariances, TStudentStatistic& S) {
  if (A.Count < 2 || B.Count < 2) return false;
  double Difference = A.Mean - B.Mean;
  if (EqualVariances) {
    double Df = A.Count + B.Count - 2;
    double Pooled = ((A.Count - 1) * A.Variance + (B.Count - 1) * B.Variance) / Df;
    if (Pooled <= 0) return false;
    S = {Difference / std::sqrt(Pooled * (1 / A.Count + 1 / B.Count)), Df};
    return true;
  }
  // Welch's test, with the Welch-Satterthwaite degrees of freedom (not whole).
  double ShareA = A.Variance / A.Count, ShareB = B.Variance / B.Count;
  double Spread = ShareA + ShareB;
  if (Spread <= 0) return false;
  double Df = Spread * Spread / (ShareA * ShareA / (A.Count - 1) + ShareB * ShareB / (B.Count - 1));
  S = {Difference / std::sqrt(Spread), Df};
  return true;
}

TCellValue ConfidenceT(const TFunctionCall& C) {
  double Alpha, Sd, Size;
  if (!ReadNumbers(C, {&Alpha, &Sd, &Size})) return Err(ceValue);
  Size = std::trunc(Size);
  if (!(Alpha > 0 && Alpha < 1) || Sd <= 0 || Size < 1) return Err(ceNum);
  if (Size == 1) return Err(ceDiv0);
  return Checked(StudentTQuantile({1 - Alpha / 2, Alpha / 2}, Size - 1) * Sd / std::sqrt(Size));
}

}  // namespace

// T.TEST(array1, array2, tails, type): type 1 paired, 2 equal variances,
// 3 unequal variances.
TCellValue TTest(const TFunctionCall& C) {
  double Tails, Type;
  if (!ArgInteger(C[2], Tails) || !ArgInteger(C[3], Type)) return Err(ceValue);
  if ((Tails != 1 && Tails != 2) || Type < 1 || Type > 3) return Err(ceNum);
  TStudentStatistic S;
  if (Type == 1) {
    TCellErrorCode Error;
    if (!PairedStatistic(C[0], C[1], S, Error)) return Err(Error);
  } else {
    std::vector<double> A, B;
    if (!ReadSample(C[0], A) || !ReadSample(C[1], B)) return Err(ceValue);
    if (!TwoSampleStatistic(MomentsOf(A), MomentsOf(B), Type == 2, S)) return Err(ceDiv0);
  }
  return Checked(Tails * StudentTTails(std::fabs(S.T), S.Df).Upper);
}

// The two-tailed probability that the variances of two samples differ no
// more than chance would make them.
TCellValue FTest(const TFunctionCall& C) {
  std::vector<double> A, B;
  if (!ReadSample(C[0], A) || !ReadSample(C[1], B)) return Err(ceValue);
  TMoments MA = MomentsOf(A), MB = MomentsOf(B);
  if (MA.Count < 2 || MB.Count < 2 || MA.Variance <= 0 || MB.Variance <= 0) return Err(ceDiv0);
  TTailPair Tails = FisherTails(MA.Variance / MB.Variance, MA.Count - 1, MB.Count - 1);
  return Checked(2 * std::min(Tails.Lower, Tails.Upper));
}

// CHISQ.TEST(actual, expected): the upper tail of Pearson's statistic, with
// (rows - 1)(columns - 1) degrees of freedom, or one less than the count of
// a single row or column. Pairs where either cell is no number are passed over.
TCellValue ChisqTest(const TFunctionCall& C) {
  TFormulaArg Actual = AsRangeArg(C[0]), Expected = AsRangeArg(C[1]);
  int32_t Rows = Actual.RowCount, Cols = Actual.ColCount;
  if (Rows != Expected.RowCount || Cols != Expected.ColCount || Rows * Cols < 2) return Err(ceNA);
  double Df = Rows > 1 && Cols > 1 ? double(Rows - 1) * (Cols - 1) : double(std::max(Rows, Cols) - 1);
  double Statistic = 0;
  for (size_t I = 0; I < Actual.Cells.size() && I < Expected.Cells.size(); ++I) {
    const TCellValue &A = Actual.Cells[I], &E = Expected.Cells[I];
    if (A.Kind != cvkNumber || E.Kind != cvkNumber) continue;
    if (E.Number < 0) return Err(ceNum);
    if (E.Number == 0) return Err(ceDiv0);
    Statistic += (A.Number - E.Number) * (A.Number - E.Number) / E.Number;
  }
  return Checked(GammaTails(Statistic / 2, Df / 2).Upper);
}

// Z.TEST(array, x, [sigma]): the one-tailed probability of a sample mean at
// least this far above x; sigma defaults to the sample's own deviation.
TCellValue ZTest(const TFunctionCall& C) {
  std::vector<double> Sample;
  double X;
  if (!ReadSample(C[0], Sample) || !ArgNumber(C[1], X)) return Err(ceValue);
  TMoments M = MomentsOf(Sample);
  if (M.Count == 0) return Err(ceNA);
  double Sigma;
  if (C.Count() > 2) {
    if (!ArgNumber(C[2], Sigma)) return Err(ceValue);
    if (Sigma <= 0) return Err(ceNum);
  } else {
    if (M.Count < 2 || M.Variance <= 0) return Err(ceDiv0);
    Sigma = std::sqrt(M.Variance);
  }
  return Checked(NormalCdf(-(M.Mean - X) / (Sigma / std::sqrt(M.Count))));
}

TCellValue ConfidenceNorm(const TFunctionCall& C) {
  double Alpha, Sd, Size;
  if (!ReadNumbers(C, {&Alpha, &Sd, &Size})) return Err(ceValue);
  Size = std::trunc(Size);
  if (!(Alpha > 0 && Alpha < 1) || Sd <= 0 || Size < 1) return Err(ceNum);
  return Checked(-InverseNormalCdf(Alpha / 2) * Sd / std::sqrt(Size));
}

}  // namespace Tabrino::DistributionBuiltins

namespace Tabrino {

std::span<const TFunctionDef> HypothesisTestFunctions() {
  using namespace DistributionBuiltins;
  static constexpr TFunctionDef Table[] = {
      {"T.TEST", 4, 4, fnNone, TTest},
      {"F.TEST", 2, 2, fnNone, FTest},
      {"CHISQ.TEST", 2, 2, fnNone, ChisqTest},
      {"Z.TEST", 2, 3, fnNone, ZTest},
      {"CONFIDENCE.NORM", 3, 3, fnNone, ConfidenceNorm},
      {"CONFIDENCE.T", 3, 3, fnNone, ConfidenceT},
  };
  return Table;
}

}  // namespace Tabrino
