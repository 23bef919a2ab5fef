// SmallStack: runs a piece of a test where deep recursion does not survive.
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>

/// Runs the function on a thread of its own with a stack of 256 KiB.
inline void withSmallStack(std::function<void()> function) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024), 0);
  pthread_t thread{};
  auto const run = [](void* work) -> void* {
    (*static_cast<std::function<void()>*>(work))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &function), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}
