// A flag raised for the outermost of nested scopes: the scope that finds it
// down raises it and lowers it when it ends (by return or exception); scopes
// opened inside leave it alone.
#pragma once

namespace Tabrino {

class TOutermostScope {
 public:
  explicit TOutermostScope(bool& Flag) : FFlag(Flag), FOuter(!Flag) { Flag = true; }
  ~TOutermostScope() {
    if (FOuter) FFlag = false;
  }
  TOutermostScope(const TOutermostScope&) = delete;
  TOutermostScope& operator=(const TOutermostScope&) = delete;

 private:
  bool& FFlag;
  bool FOuter;
};

}  // namespace Tabrino
