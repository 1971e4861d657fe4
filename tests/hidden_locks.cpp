// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Shows locks to ThreadSanitizer that it does not know. Part of every test program of the preset tsan.
//
// glib makes its locks of atomics and futexes, and Debian's glib is not instrumented. The sanitizer sees no order
// between the threads of libvips, then, and reports everything that they hand over: rows, sources, results. A
// suppression of libvips would hide real races too, since its threads call into this program. These functions have the
// names of those of glib, so that the libraries call them. They call the function of glib and report what it orders.
//
// std::timed_mutex calls pthread_mutex_clocklock(), which the sanitizer of GCC 12 does not know either.
#include <dlfcn.h>
#include <pthread.h>

#include <cstdint>
#include <ctime>

extern "C" void __tsan_acquire(void* address);
extern "C" void __tsan_release(void* address);

namespace {

using OnLock = void(void* lock);
using TryLock = int(void* lock);
using Wait = void(void* condition, void* lock);
using WaitUntil = int(void* condition, void* lock, std::int64_t end);
using OnObject = void(void* object);

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" void g_mutex_lock(void* lock) {
  static auto* const next = Next<OnLock>("g_mutex_lock");
  next(lock);
  __tsan_acquire(lock);
}

extern "C" int g_mutex_trylock(void* lock) {
  static auto* const next = Next<TryLock>("g_mutex_trylock");
  const int locked = next(lock);
  if (locked != 0) __tsan_acquire(lock);
  return locked;
}

extern "C" void g_mutex_unlock(void* lock) {
  static auto* const next = Next<OnLock>("g_mutex_unlock");
  __tsan_release(lock);
  next(lock);
}

extern "C" void g_rec_mutex_lock(void* lock) {
  static auto* const next = Next<OnLock>("g_rec_mutex_lock");
  next(lock);
  __tsan_acquire(lock);
}

extern "C" void g_rec_mutex_unlock(void* lock) {
  static auto* const next = Next<OnLock>("g_rec_mutex_unlock");
  __tsan_release(lock);
  next(lock);
}

extern "C" void g_cond_wait(void* condition, void* lock) {
  static auto* const next = Next<Wait>("g_cond_wait");
  __tsan_release(lock);
  next(condition, lock);
  __tsan_acquire(lock);
}

extern "C" int g_cond_wait_until(void* condition, void* lock, std::int64_t end) {
  static auto* const next = Next<WaitUntil>("g_cond_wait_until");
  __tsan_release(lock);
  const int signalled = next(condition, lock, end);
  __tsan_acquire(lock);
  return signalled;
}

extern "C" int pthread_mutex_clocklock(pthread_mutex_t* mutex, clockid_t clock, const timespec* end) {
  constexpr long kSecond = 1'000'000'000;
  timespec now{};
  timespec last{};
  clock_gettime(clock, &now);
  clock_gettime(CLOCK_REALTIME, &last);
  const long nanoseconds = last.tv_nsec + end->tv_nsec - now.tv_nsec + kSecond;
  last.tv_sec += end->tv_sec - now.tv_sec + nanoseconds / kSecond - 1;
  last.tv_nsec = nanoseconds % kSecond;
  return pthread_mutex_timedlock(mutex, &last);
}

// The last owner destroys the object, after everything that the others did with it.
extern "C" void g_object_unref(void* object) {
  static auto* const next = Next<OnObject>("g_object_unref");
  __tsan_release(object);
  __tsan_acquire(object);
  next(object);
}
