// SPDX-License-Identifier: MIT
// One device as the runtime serves it: brought up in the driver's calling order, then batches of requests
// through the output and the input filter, re-initialised after a time-out, closed in the end.
#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/access.h"
#include "host/driverlibrary.h"

namespace ostravel::host {

// Requests that one batch can hold.
inline constexpr std::size_t kBatchLimit = 31;

struct DeviceSettings {
  std::string project_file;
  std::uint32_t table_position = 0;
  std::string address = "127.0.0.1";  // IPv4
  std::uint8_t station = 1;           // of the PLC
  bool offline = false;
};

// The four octets; throws UserError when the text is no IPv4 address.
std::vector<std::uint8_t> parse_address(const std::string& text);

// How a batch ended, as the status codes tell it.
enum class Outcome : std::uint8_t {
  Served,    // each record has its own status
  NotReady,  // 13: ask again; the driver keeps the batch, so the same batch must be asked for
  NoData,    // 2 for the whole batch: symbols are being loaded, or the connection was lost
  Failed,    // the failed-loader answer: wait 1, response length 8
};

struct Record {
  BYTE error = 0;
  BYTE status = 0;
  Words words;  // as many as the request asked for; empty when error is not 0
};

struct BatchAnswer {
  Outcome outcome = Outcome::Served;
  std::vector<Record> records;  // one per request; empty when the driver's answer was Failed
};

class Session {
 public:
  // Brings the device up. The driver must outlive the session.
  Session(const DriverLibrary& driver, DeviceSettings settings);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  // One exchange of at most kBatchLimit requests. While the driver says 13 its input filter is asked again,
  // with short pauses, for as long as patience lasts.
  //
  // The driver keeps a batch that it has not answered, and answers the next one with its values. After
  // NotReady and NoData the next read must therefore be of the same batch, unless reinitialise came between.
  BatchAnswer read(std::span<const Access> batch);

  // One write. Served says no more than that the driver took it: a failed write is answered like a good one.
  BatchAnswer write(const WriteAccess& write);

  // What the runtime does when a response does not come: time-out, then initialisation once more.
  void reinitialise();

  // The driver's own word on the connection.
  bool connected();

  const DeviceSettings& settings() const { return settings_; }
  void set_patience(std::chrono::milliseconds patience) { patience_ = patience; }

 private:
  void initialise();
  GUI_REQUEST request_of(const Access& access, BYTE function);
  BatchAnswer exchange(std::span<const Access> batch, bool read);
  BatchAnswer collect(std::span<const Access> batch, bool read) const;

  const DriverLibrary& driver_;
  DeviceSettings settings_;
  std::chrono::milliseconds patience_{250};
  DWORD* device_ = nullptr;
  WORD sequence_ = 0;
  std::vector<GUI_REQUEST> requests_;
  std::vector<DEVICE_INFO> infos_;
  std::vector<INPUT_DATA> inputs_;
};

}  // namespace ostravel::host
