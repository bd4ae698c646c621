// SPDX-License-Identifier: MIT
// What the tests of the symbolic engine share: a prepared access with its buffer, byte lists, captured
// output.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/fake/fakelibrary.h"

using Bytes = std::vector<unsigned char>;
using Lines = std::vector<std::string>;

// One access to a variable named X, as a job leaves it. The buffer starts with rubbish.
struct Access {
  Access(FakeLibrary& library, const Item& item)
      : buffer(static_cast<std::size_t>(std::max(item.buffer_size, 0)), 0x77),
        rw{library.access("X"), buffer.empty() ? nullptr : buffer.data(), item.buffer_size, 0, 0} {
    library.add("X", item);
  }

  Bytes buffer;
  SymbolicRW_t rw;
};

template <class Function>
std::string printed_by(Function function) {
  testing::internal::CaptureStdout();
  function();
  return testing::internal::GetCapturedStdout();
}

// The message of the Exception that function raises; no such exception is a failure.
template <class Exception, class Function>
std::string raised_by(Function function) {
  try {
    function();
  } catch (const Exception& exception) {
    return exception.what();
  }
  ADD_FAILURE() << "nothing was raised";
  return {};
}

// Names the rows of a table-driven test.
template <class Row>
std::string case_name(const testing::TestParamInfo<Row>& row) {
  return row.param.name;
}
