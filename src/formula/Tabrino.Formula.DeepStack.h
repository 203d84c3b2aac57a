// Formulas recurse through the cells, names and INDIRECT targets they read,
// so a long chain of references that have no cached value yet recurses as
// deep as the chain is long. Instead of a depth limit (which would change
// results) the evaluation moves to a fresh thread with a large stack whenever
// the current one runs low. Only deep chains pay for that, and the address
// space of the big stack costs memory only where it is touched.
#pragma once

#include <functional>
#include <utility>

namespace Tabrino {

bool HasStackHeadroom();
// Runs Work on a new thread with a large stack and waits for it; exceptions
// pass through.
void RunOnBigStack(const std::function<void()>& Work);

// Runs Work on this thread when enough stack is left, otherwise on a big stack.
template <typename F>
void RunWithStackHeadroom(F&& Work) {
  if (HasStackHeadroom()) {
    Work();
  } else {
    RunOnBigStack(std::function<void()>(std::forward<F>(Work)));
  }
}

}  // namespace Tabrino
