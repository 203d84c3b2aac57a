#include "Tabrino.Formula.DeepStack.h"

#include <pthread.h>

#include <cstdint>
#include <exception>
#include <stdexcept>

namespace Tabrino {

namespace {

// Sanitizer builds use far larger frames, so they ask for more room.
#if defined(__SANITIZE_ADDRESS__)
constexpr size_t MinHeadroom = 1024 * 1024;
#else
constexpr size_t MinHeadroom = 256 * 1024;
#endif
constexpr size_t BigStackSize = size_t(1) << 30;

struct TStackBounds {
  uintptr_t Low = 0;
};

TStackBounds CurrentThreadBounds() {
  TStackBounds Bounds;
  pthread_attr_t Attr;
  if (pthread_getattr_np(pthread_self(), &Attr) == 0) {
    void* Address = nullptr;
    size_t Size = 0;
    if (pthread_attr_getstack(&Attr, &Address, &Size) == 0) Bounds.Low = reinterpret_cast<uintptr_t>(Address);
    pthread_attr_destroy(&Attr);
  }
  return Bounds;
}

thread_local TStackBounds ThreadBounds = CurrentThreadBounds();

}  // namespace

bool HasStackHeadroom() {
  uintptr_t Here = reinterpret_cast<uintptr_t>(__builtin_frame_address(0));
  return ThreadBounds.Low == 0 || Here - ThreadBounds.Low > MinHeadroom;
}

namespace {

struct TThreadJob {
  const std::function<void()>* Work;
  std::exception_ptr Error;
};

void* RunJob(void* Arg) {
  auto* Job = static_cast<TThreadJob*>(Arg);
  try {
    (*Job->Work)();
  } catch (...) {
    Job->Error = std::current_exception();
  }
  return nullptr;
}

}  // namespace

void RunOnBigStack(const std::function<void()>& Work) {
  TThreadJob Job{&Work, nullptr};
  pthread_attr_t Attr;
  pthread_attr_init(&Attr);
  pthread_attr_setstacksize(&Attr, BigStackSize);
  pthread_t Thread;
  int Status = pthread_create(&Thread, &Attr, RunJob, &Job);
  pthread_attr_destroy(&Attr);
  if (Status != 0) throw std::runtime_error("cannot start an evaluation thread");
  pthread_join(Thread, nullptr);
  if (Job.Error) std::rethrow_exception(Job.Error);
}

}  // namespace Tabrino
