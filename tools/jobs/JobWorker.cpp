#include "tools/jobs/JobWorker.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <thread>
#include <utility>

#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/Platform.h"

namespace tools {

JobWorker::JobWorker(const std::string& argument) : answers_(inheritedFile(argument)) {
  if (ok()) std::thread([this] { readOrders(); }).detach();
}

Message JobWorker::nextOrder() {
  std::unique_lock<std::mutex> lock(mutex_);
  arrived_.wait(lock, [this] { return !orders_.empty(); });
  Message order = std::move(orders_.front());
  orders_.pop_front();
  return order;
}

void JobWorker::finish(const Message& result) const {
  std::cout.flush();
  std::fflush(stdout);
  tell({{"result", result}});
}

void JobWorker::readOrders() {
  const Channel orders(kStandardInput, -1);
  while (auto order = orders.receive()) {
    const std::lock_guard<std::mutex> lock(mutex_);
    orders_.push_back(*std::move(order));
    arrived_.notify_one();
  }
  std::_Exit(kDone);
}

}  // namespace tools
