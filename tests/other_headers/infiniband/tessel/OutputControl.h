#ifndef OTHER_HEADERS_OUTPUT_CONTROL_H
#define OTHER_HEADERS_OUTPUT_CONTROL_H

#include <string>

class OutputControl {
 public:
  enum Flags {
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
    OutputControl_Flag_Type_Mask = 0x30000
  };

  class Identity {
   public:
    Identity(const std::string& name, Flags flags) : name_(name), flags_(flags) {}

   private:
    friend class Fabscan;
    std::string name_;
    Flags flags_;
  };
};

#endif
