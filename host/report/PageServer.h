#pragma once

/// @file
/// A page whose numbers are read when a browser asks for them.

#include <functional>
#include <memory>
#include <string>

namespace quilon {

class PageSource;

/// A server on this machine's loopback address alone. Whoever does not know the token gets 403, and a request that
/// names another host, as a page of somewhere else may make a browser send it, gets 421.
///
/// Memory: that of the source; an answer is one blob.
/// Threads: requests are answered by threads of its own, the source is used by one at a time.
class PageServer
{
public:
  /// @param source borrowed
  /// @param page   the text of the page
  /// @param port   0: any that is free
  /// @throws FED_Failure for a port that is taken
  PageServer(PageSource& source, std::string page, int port);
  PageServer(const PageServer&)            = delete;
  PageServer& operator=(const PageServer&) = delete;
  ~PageServer();

  /// @return "http://127.0.0.1:43210/TOKEN/", TOKEN 32 hexadecimal digits that nobody can foresee
  std::string GetAddress() const;

  /// Answers requests until it is to stop.
  /// @param isToStop asked about ten times a second
  void Run(const std::function<bool()>& isToStop);

private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quilon
