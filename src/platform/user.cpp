// Message boxes and beeps go to handlers that the host sets.
#include <atomic>
#include <cstdio>

#include "tessaline/host.h"
#include "tessaline/platform/user.h"

namespace {

int default_message_box(HWND, const char* text, const char* caption, UINT) {
  std::fprintf(stderr, "%s: %s\n", caption ? caption : "", text ? text : "");
  return IDOK;
}

void default_beep(UINT) {}

std::atomic<MessageBoxHandler> box_handler{default_message_box};
std::atomic<MessageBeepHandler> beep_handler{default_beep};

}  // namespace

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler h) {
  return box_handler.exchange(h ? h : default_message_box);
}

MessageBeepHandler SetMessageBeepHandler(MessageBeepHandler h) {
  return beep_handler.exchange(h ? h : default_beep);
}

int MessageBoxA(HWND owner, const char* text, const char* caption, UINT type) {
  return box_handler.load()(owner, text, caption, type);
}

BOOL MessageBeep(UINT type) {
  beep_handler.load()(type);
  return TRUE;
}
