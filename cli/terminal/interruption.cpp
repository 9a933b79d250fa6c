#include "cli/terminal/interruption.h"

namespace fabscan {

namespace {

volatile std::sig_atomic_t interrupted = 0;
struct sigaction before {};

extern "C" void NoteInterruption(int signal_number) {
  interrupted = 1;
  ::sigaction(signal_number, &before, nullptr);
}

}  // namespace

Interruption::Interruption() {
  interrupted = 0;
  struct sigaction action {};
  action.sa_handler = NoteInterruption;  // without SA_RESTART
  ::sigaction(SIGINT, nullptr, &before);
  if (before.sa_handler != SIG_IGN) ::sigaction(SIGINT, &action, nullptr);
}

Interruption::~Interruption() { ::sigaction(SIGINT, &before, nullptr); }

bool Interruption::requested() const { return interrupted != 0; }

}  // namespace fabscan
