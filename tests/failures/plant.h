// SPDX-License-Identifier: MIT
// The PLC of the failure tests: its variables, the project's rows, the requests, and what the runtime gets
// when nothing fails. All written out by hand.
#pragma once

#include <string>
#include <vector>

#include "tests/driver/projectfile.h"
#include "tests/driver/requestbuilder.h"
#include "tests/fake/fakelibrary.h"

// One tag of the read batch: its path in the PLC, and its record when nothing fails.
struct ReadTag {
  std::string path;
  RequestBuilder request;
  std::string answer;
};

// One batch of all kinds of values; no two tags have the same path.
const std::vector<ReadTag>& read_tags();
std::vector<RequestBuilder> read_requests();
std::vector<std::string> read_answers();

// One write: what the library is given of it when nothing fails, as stored_texts tells it.
struct WriteTag {
  std::string path;
  RequestBuilder request;
  std::vector<std::string> stored;
};
const std::vector<WriteTag>& write_tags();

// "Int16 Speed 0 7": the kind of value, the path, the element and the value.
std::vector<std::string> stored_texts(const FakeLibrary& library);

// Project and variables of all tests online.
ProjectFile plant_project();
void add_plant(FakeLibrary& library);
