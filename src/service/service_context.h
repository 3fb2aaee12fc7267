// All that the life of the service may touch: it is the writer of settings and words,
// and opens and closes what the others use.
#pragma once

#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/listener.h"
#include "platform/text_encoding.h"
#include "service/diagnostics.h"
#include "service/language_words.h"
#include "service/settings.h"

namespace quillon {

struct ServiceContext {
  const Diagnostics& diagnostics;
  Settings& settings;
  Clock& clock;
  EventLoop& loop;
  Listener& tcpServer;
  LangWords& words;
  std::string& FavIconData;

  std::unique_ptr<EventLoop::Timer> timer1 = nullptr;    // runs while the service is started
  std::unique_ptr<LoadedCharset> pageCharset = nullptr;  // of CharSet, with the listener
  std::int64_t startTick = 0;                            // ms of the clock's tick at StartTime
  bool stopping = false;                                 // state 0 has begun
  int exitStatus = 0;                                    // of the process
};

}  // namespace quillon
