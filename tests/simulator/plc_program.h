// SPDX-License-Identifier: MIT
// The program that the tests of PLC, wire and stand-in run. Offsets are not relied on; paths and types are.
#pragma once

#include "simulator/plc/server.h"
#include "simulator/program/source.h"

namespace ostravel::plc {

inline constexpr std::string_view kTestSource = R"(
TYPE "Tank"
VERSION : 0.1
  STRUCT
    Level : Real;
    Alarm : Bool;
  END_STRUCT;
END_TYPE

DATA_BLOCK "Plant"
{ S7_Optimized_Access := 'TRUE' }
VERSION : 0.1
  VAR
    Flag : Bool;
    aByte : Byte;
    aWord : Word;
    aDWord : DWord;
    aLWord : LWord;
    aSInt : SInt;
    aInt : Int;
    aDInt : DInt;
    aLInt : LInt;
    aUSInt : USInt;
    aUInt : UInt;
    aUDInt : UDInt;
    aULInt : ULInt;
    aReal : Real;
    aLReal : LReal;
    aChar : Char;
    aWChar : WChar;
    Text : String[10];
    Wide : WString[10];
    aTime : Time;
    aLTime : LTime;
    aS5Time : S5Time;
    aDate : Date;
    aTod : Time_Of_Day;
    aLTod : LTOD;
    aDt : Date_And_Time;
    aLdt : LDT;
    aDtl : DTL;
    Numbers : Array[3..10] of Int;
    Matrix : Array[1..2, -1..1] of DInt;
    Six : Array[0..1, 0..1, 0..1, 0..1, 0..1, 1..2] of Byte;
    Bits : Array[0..7] of Bool;
    Texts : Array[1..3] of String[4];
    Tanks : Array[1..2] of "Tank";
    "Odd.Name 1" : Int := 77;
    Locked { ExternalWritable := 'False' } : Int := 5;
    Hidden { ExternalAccessible := 'False'; ExternalVisible := 'False'; ExternalWritable := 'False' } : Int;
  END_VAR
BEGIN
END_DATA_BLOCK

DATA_BLOCK "Live"
VERSION : 0.1
  VAR
    Count : UInt;
    Wave : Real;
  END_VAR
BEGIN
END_DATA_BLOCK
)";

inline Program test_program() {
  return load_text(kTestSource, "test.db");
}

// A PLC of the tests' own: any free port, and its program runs by the console's `step` only.
inline ServerOptions test_options() {
  ServerOptions options;
  options.port = 0;
  options.cycle = std::chrono::microseconds(0);
  return options;
}

}  // namespace ostravel::plc
