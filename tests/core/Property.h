// Property: a RapidCheck law inside a gtest case, tried as often as it needs. A failure prints the smallest case found
// and, as RC_PARAMS, what tries it again.
#pragma once

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <sstream>

template <class Law>
void expectLaw(int cases, Law const& law) {
  auto const* const test = testing::UnitTest::GetInstance()->current_test_info();
  rc::detail::TestMetadata metadata;
  metadata.id = std::string(test->test_suite_name()) + "/" + test->name();
  metadata.description = test->name();
  rc::detail::TestParams params = rc::detail::configuration().testParams;
  // RC_PARAMS may ask for more of them.
  if (params.maxSuccess == rc::detail::TestParams{}.maxSuccess) params.maxSuccess = cases;
  auto const result = rc::detail::checkTestable(law, metadata, params);
  if (result.template is<rc::detail::SuccessResult>()) return;
  std::ostringstream message;
  rc::detail::printResultMessage(result, message);
  ADD_FAILURE() << message.str();
}
