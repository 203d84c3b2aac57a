#include "Tabrino.Theme.h"

#include <algorithm>
#include <cmath>

namespace Tabrino {

void TTabrinoTheme::SetDefaultOfficeTheme() {
  FMajorFont = "Calibri Light";
  FMinorFont = "Calibri";
  FColors = {0xFF000000, 0xFFFFFFFF, 0xFF44546A, 0xFFE7E6E6, 0xFF4472C4, 0xFFED7D31,
             0xFFA5A5A5, 0xFFFFC000, 0xFF5B9BD5, 0xFF70AD47, 0xFF0563C1, 0xFF954F72};
}

uint32_t TTabrinoTheme::ResolveThemeColor(int32_t Index, double Tint) const {
  static constexpr int32_t Swapped[] = {1, 0, 3, 2};
  int32_t Stored = Index >= 0 && Index < 4 ? Swapped[Index] : Index;
  uint32_t Base = Stored >= 0 && Stored < static_cast<int32_t>(FColors.size()) ? FColors[Stored] : 0xFF000000;
  return ApplyTint(Base, Tint);
}

namespace {

double HueToChannel(double P, double Q, double H) {
  if (H < 0) H += 1;
  if (H > 1) H -= 1;
  if (H < 1.0 / 6) return P + (Q - P) * 6 * H;
  if (H < 0.5) return Q;
  if (H < 2.0 / 3) return P + (Q - P) * (2.0 / 3 - H) * 6;
  return P;
}

uint32_t ToByte(double Channel) {
  return static_cast<uint32_t>(std::clamp(std::lround(Channel * 255), 0L, 255L));
}

}  // namespace

uint32_t ApplyTint(uint32_t ARGB, double Tint) {
  if (std::fabs(Tint) <= 1E-12) return ARGB;
  double R = ((ARGB >> 16) & 0xFF) / 255.0, G = ((ARGB >> 8) & 0xFF) / 255.0, B = (ARGB & 0xFF) / 255.0;
  double Max = std::max({R, G, B}), Min = std::min({R, G, B});
  double L = (Max + Min) / 2, H = 0, S = 0, D = Max - Min;
  if (D > 1E-12) {
    S = L <= 0.5 ? D / (Max + Min) : D / (2 - Max - Min);
    if (Max == R)
      H = (G - B) / D + (G < B ? 6 : 0);
    else if (Max == G)
      H = (B - R) / D + 2;
    else
      H = (R - G) / D + 4;
    H /= 6;
  }
  L = Tint < 0 ? L * (1 + Tint) : L * (1 - Tint) + Tint;
  L = std::clamp(L, 0.0, 1.0);
  if (S <= 1E-12) {
    R = G = B = L;
  } else {
    double Q = L < 0.5 ? L * (1 + S) : L + S - L * S;
    double P = 2 * L - Q;
    R = HueToChannel(P, Q, H + 1.0 / 3);
    G = HueToChannel(P, Q, H);
    B = HueToChannel(P, Q, H - 1.0 / 3);
  }
  return (ARGB & 0xFF000000) | (ToByte(R) << 16) | (ToByte(G) << 8) | ToByte(B);
}

uint32_t ResolveColor(const TColorRef& Ref, const TTabrinoTheme* Theme) {
  if (!Theme || !Ref.IsThemeColor()) return Ref.ARGB;
  return Theme->ResolveThemeColor(Ref.ThemeIndex, Ref.Tint);
}

}  // namespace Tabrino
