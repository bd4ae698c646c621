// SPDX-License-Identifier: MIT
#include "driver/gdata.h"

std::map<BYTE, std::string> ip_table;
std::string DeviceIP;
std::vector<unsigned char> write_string_data;
KORVALE_DRV_GET_HMIDATA gfnGetHMIData = nullptr;
KORVALE_DRV_SET_HMIDATA gfnSetHMIData = nullptr;
DriverPrivate driver_globle = {};
