#ifndef FABSCAN_TESTING_WRITTEN_H
#define FABSCAN_TESTING_WRITTEN_H

#include <sstream>
#include <string>

#include "source_writer.h"

namespace fabscan::generator {

/// What `write(writer)` writes.
template <class Write>
std::string Written(Write write) {
  std::ostringstream out;
  {
    SourceWriter writer(out);
    write(writer);
  }
  return out.str();
}

}  // namespace fabscan::generator

#endif
