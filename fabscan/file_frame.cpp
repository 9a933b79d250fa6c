#include <algorithm>
#include <ctime>
#include <iterator>
#include <string_view>

#include "fabscan_sim_info_dump.h"
#include "source_writer.h"

// Whoever ships the tool names the owner of the generated code here, at build time.
#ifdef FABSCAN_LICENCE_TEXT
#include FABSCAN_LICENCE_TEXT
#endif

#ifndef FABSCAN_LICENCE_HOLDER
#define FABSCAN_LICENCE_HOLDER "The fabscan authors"
#endif

#ifndef FABSCAN_LICENCE_IDENTIFIER
#define FABSCAN_LICENCE_IDENTIFIER "fabscan-Proprietary"
#endif

#ifndef FABSCAN_LICENCE_NOTICE
#define FABSCAN_LICENCE_NOTICE                                                       \
  (FABSCAN_LICENCE_HOLDER " and their licensors keep all"),                          \
      "intellectual property rights in this material and in its documentation.",     \
      "Without an express licence agreement from the holder it is prohibited to",    \
      "use, reproduce, disclose or distribute this material, its documentation, or", \
      "any part of them. This notice stays with every copy and with every part of", "a copy."
#endif

namespace fabscan::generator {
namespace {

constexpr std::string_view kHolder = FABSCAN_LICENCE_HOLDER;
constexpr std::string_view kIdentifier = FABSCAN_LICENCE_IDENTIFIER;
constexpr std::string_view kNotice[] = {FABSCAN_LICENCE_NOTICE};

constexpr int kYearWithoutClock = 2025;

/// Text that can stand on one line of a block comment.
constexpr bool FitsCommentLine(std::string_view text) {
  char before = '\0';
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == '\\') return false;
    if ((before == '*' && c == '/') || (before == '/' && c == '*')) return false;
    before = c;
  }
  return !text.empty() && text.back() != ' ';
}

constexpr bool NoticeFits() {
  for (const std::string_view line : kNotice) {
    if (!FitsCommentLine(line)) return false;
  }
  return true;
}

constexpr bool IsLicenceReference(std::string_view text) {
  for (const char c : text) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (!letter && !(c >= '0' && c <= '9') && c != '.' && c != '-') return false;
  }
  return !text.empty();
}

static_assert(FitsCommentLine(kHolder), "FABSCAN_LICENCE_HOLDER must fit a line of a comment");
static_assert(IsLicenceReference(kIdentifier),
              "FABSCAN_LICENCE_IDENTIFIER takes letters, digits, dots and hyphens");
static_assert(std::size(kNotice) == 6, "FABSCAN_LICENCE_NOTICE must have six lines");
static_assert(NoticeFits(), "each line of FABSCAN_LICENCE_NOTICE must fit a line of a comment");
static_assert(kNotice[std::size(kNotice) - 1].back() == '.',
              "FABSCAN_LICENCE_NOTICE must end with a full stop");

int CurrentYear() {
  const std::time_t now = std::time(nullptr);
  const std::tm* local = std::localtime(&now);  // NOLINT(concurrency-mt-unsafe)
  return local == nullptr ? kYearWithoutClock : local->tm_year + 1900;
}

}  // namespace
}  // namespace fabscan::generator

using namespace fabscan::generator;

void SimInfoDumpCPP::PrintCopyright(std::ostream& out) const {
  SourceWriter writer(out);
  writer.Text("/*").EndLine();
  writer.Text("* SPDX-FileCopyrightText: Copyright (c) 2024-").SignedDecimal(CurrentYear());
  writer.Text(" ").Text(kHolder).Text(". All rights reserved").EndLine();
  writer.Text("* SPDX-License-Identifier: LicenseRef-").Text(kIdentifier).EndLine();
  writer.Text("*").EndLine();
  for (const std::string_view line : kNotice) writer.Text("* ").Text(line).EndLine();
  writer.Text("*/").EndLine();
  writer.EndLine();
}

void SimInfoDumpCPP::PrintIncludes(std::ostream& out, const std::string& name) const {
  SourceWriter writer(out);
  writer.Text("#include \"").Text(name).Text(".h\"").EndLine();
  writer.Text("#include \"../../core/node.h\"").EndLine();
  writer.Text("#include <infiniband/fabscan/fabscan_fabric.h>").EndLine();
}

std::string SimInfoDumpCPP::GetDumpedNodeType(const IBNode& node) const {
  if (node.type == IB_SW_NODE) return "SW";
  if (node.type == IB_RTR_NODE) return "RTR";
  if (node.isSpecialNode()) {
    return node.getSpecialNodeType() == IB_SPECIAL_PORT_AN ? "AN" : "Unknown";
  }
  return "HCA";
}
