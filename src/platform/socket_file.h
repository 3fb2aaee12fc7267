// A socket that is a file in a directory: its address, and the file itself.
#pragma once

#include <string>

namespace quillon {

class SocketFile {
 public:
  // FileFailure where there is no such directory. Nothing is made.
  SocketFile(const std::string& directory, std::string name);
  ~SocketFile();
  SocketFile(const SocketFile&) = delete;
  SocketFile& operator=(const SocketFile&) = delete;

  // A path for bind and connect in this process, while this lives. Addresses of sockets end at 107
  // bytes, so a long directory stands in it by its descriptor.
  std::string Address() const;

  // True for anything of that name, and for a socket.
  bool Exists() const;
  bool IsSocket() const;

  void Remove() const;

 private:
  std::string name_;
  int directory_;
};

}  // namespace quillon
