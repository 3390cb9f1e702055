// A thread with little stack, as programs with many threads give it.
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>

namespace OvXmlLib16::test {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kAddressSanitizer = true;
#elif defined(__has_feature)
inline constexpr bool kAddressSanitizer = __has_feature(address_sanitizer);
#else
inline constexpr bool kAddressSanitizer = false;
#endif

inline constexpr std::size_t kMebi = 1024 * 1024;
/// What binding and writing at the default limit of depth must do with; the sanitizer's frames are several times
/// larger.
inline constexpr std::size_t kBindingStack = kAddressSanitizer ? 8 * kMebi : kMebi;

/// Runs `call`, which must not throw, in a thread of its own with a stack of `bytes`.
inline void OnSmallStack(const std::function<void()>& call, std::size_t bytes = kMebi) {
  const auto run = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  pthread_attr_t attributes;
  pthread_t thread;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
  ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&call)), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

}  // namespace OvXmlLib16::test
