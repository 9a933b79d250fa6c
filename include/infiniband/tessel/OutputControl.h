#ifndef INFINIBAND_TESSEL_OUTPUT_CONTROL_H
#define INFINIBAND_TESSEL_OUTPUT_CONTROL_H

#include <string>
#include <utility>

/// How the tool names its output files.
class OutputControl {
 public:
  enum Flags : unsigned {
    OutputControl_Flag_None = 0,
    OutputControl_Flag_Valid = 1,
    OutputControl_Flag_UserFile = 2,
    OutputControl_Flag_CustomFileName = 4,
    OutputControl_Flag_File_Mask = 6,
    OutputControl_Flag_AppDefault = 256,
    OutputControl_Flag_All = 512,
    OutputControl_Flag_Default = 1024,
    OutputControl_Flag_Special_Mask = 1792,
    OutputControl_Flag_Generic = 0x10000,
    OutputControl_Flag_CSV = 0x20000,
    OutputControl_Flag_Type_Mask = 0x30000,
  };

  /// Names one output file. With `OutputControl_Flag_CustomFileName` the name is used unchanged.
  class Identity {
   public:
    Identity(std::string file_name, Flags flags)
        : file_name_(std::move(file_name)), flags_(flags) {}

    const std::string& fileName() const { return file_name_; }
    Flags flags() const { return flags_; }

   private:
    std::string file_name_;
    Flags flags_;
  };
};

#endif
