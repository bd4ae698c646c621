// SPDX-License-Identifier: MIT
// Everything that crosses from the runtime to the driver and from the driver to the communication library
// without showing in the type of an exported function: the types of the library's functions, the records
// behind untyped pointers and the enumerations behind plain numbers. scripts/check-abi compiles this and
// nobody runs it.
#include <cstdint>

#include "aglink/AGLink40.h"
#include "driver/hostrecords.h"

struct ContractOfRuntime {
  MESSAGE_HEADER* message_header;
  CMD_TYPE* command_type;
  READ_COMMAND* read_command;
  WORD_WRITE_COMMAND* word_write_command;
  RESPONSE_COMMAND* response_command;
  BIT_WRITE_COMMAND* bit_write_command;
  DATA_TRANS_COMMAND* data_trans_command;
  GUI_REQUEST* request;
  FRAME_DATA* frame;
  INPUT_DATA* input;
  DEVICE_INFO* device_info;
  DRIVER_ATTRIBUTE* attribute;
  stServiceDesc* service_description;
  DATA_TYPE data_type;
  StringMode string_mode;
  KORVALE_DRV_GET_HMIDATA get_data;
  KORVALE_DRV_SET_HMIDATA set_data;
};

// The driver reads the tag data block's fields at these places; an array's length is part of its type.
struct ContractOfTagDataBlock {
  BYTE (*size)[kTagDataBlockSize];
  BYTE (*row)[kTagRowOffset + 1];
  BYTE (*data_type)[kTagDataTypeOffset + 1];
  BYTE (*alternate_type)[kTagAlternateTypeOffset + 1];
  BYTE (*bit_selector)[kTagBitSelectorOffset + 1];
  BYTE (*index_off)[kTagIndexOffOffset + 1];
  BYTE (*array_index)[kTagArrayIndexOffset + 1];
  BYTE (*element_count)[kTagElementCountOffset + 1];
};

struct ContractOfLibrary {
  SymbolicRW_t* symbolic_job;
  agl_systemtime_t* system_time;
  RESULT40* result;
  DATA_RW40* address_job;
  S7_TCPIP_TIA_1* connection;
  S7_TCPIP_TIA* device;
  ValueType_t::enum_t value_type;
  SystemType_t::enum_t system_type;
  HierarchyType_t::enum_t hierarchy_type;
  SegmentType_t::enum_t segment_type;
  PermissionType_t::enum_t permission_type;
  TypeState_t::enum_t type_state;
  SystemTypeState_t::enum_t system_type_state;
  S7PlcFamily_t::enum_t plc_family;
  DatablockTypes_t::enum_t data_block_type;
  NodeType_t::enum_t node_type;
  PLC_ClassEx plc_class;
  ConnTypeEx connection_type;
};

// In the order in which the loader resolves them.
struct ContractOfFunctions {
#define AGL_FUNCTION(Result, Name, Failure, Lookup, Parameters) decltype(&(Name)) Name##_function;
#define AGL_LOCAL_FUNCTION(Result, Name, Parameters) decltype(&(Name)) Name##_function;
#include "aglink/functions.def"
};

extern "C" __attribute__((visibility("default"))) void ostravel_contract(ContractOfRuntime*,
                                                                         ContractOfTagDataBlock*,
                                                                         ContractOfLibrary*,
                                                                         ContractOfFunctions*) {}
