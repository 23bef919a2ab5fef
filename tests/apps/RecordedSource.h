// RecordedSource: a kernel made of recorded messages. Each table has a list of answers, given one a request; the last
// one is given again when the list is at its end.
#pragma once

#include "apps/kernel/KernelError.h"
#include "tests/apps/MessageBuilder.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <map>
#include <utility>

namespace Apps::Kernel {

struct Answer {
  std::vector<Message> messages = {};
  bool interrupted = false;            // the kernel says so in one message
  int error = 0;                       // with which the answer ends; 0: well
  bool overrun = false;                // it breaks off: the rest was lost
  std::uint32_t sequenceOfOthers = 0;  // messages before it, of an answer to another request
  std::vector<Message> othersMessages = {};
};

class RecordedSource final : public MessageSource {
 public:
  // `table` by its request: RTM_GETROUTE. A table without answers is empty.
  void answer(std::uint16_t table, Answer answer) { answers_[table].push_back(std::move(answer)); }
  void messages(std::uint16_t table, std::vector<Message> messages) { answer(table, {std::move(messages)}); }

  // Forgets earlier answers.
  void onlyAnswer(std::uint16_t table, Answer one) {
    answers_[table].clear();
    answer(table, std::move(one));
  }
  void onlyMessages(std::uint16_t table, std::vector<Message> messages) { onlyAnswer(table, {std::move(messages)}); }

  // Has each datagram pass through `spoil` before it is received.
  void spoilWith(std::function<void(Buffer&)> spoil) { spoil_ = std::move(spoil); }

  // Begins each table's list of answers again.
  void again() { requests_.clear(); }

  [[nodiscard]] int requests(std::uint16_t table) const {
    auto const found = requests_.find(table);
    return found == requests_.end() ? 0 : found->second;
  }
  [[nodiscard]] int reopened() const { return reopened_; }

  void send(Bytes request) override {
    nlmsghdr header{};
    if (!readFront(request, header)) throw KernelError{"no request"};
    auto const count = static_cast<std::size_t>(requests_[header.nlmsg_type]++);
    auto const& answers = answers_[header.nlmsg_type];
    write(answers.empty() ? Answer{} : answers[std::min(count, answers.size() - 1)], header.nlmsg_seq);
  }

  std::optional<Bytes> receive() override {
    if (position_ == datagrams_.size()) {
      if (overrun_) return std::nullopt;
      throw kernelError("The recorded answer", EAGAIN);
    }
    Buffer& datagram = datagrams_[position_++];
    if (spoil_) spoil_(datagram);
    return Bytes{datagram};
  }

  void reopen() override {
    ++reopened_;
    datagrams_.clear();
    position_ = 0;
  }

 private:
  void write(Answer const& answer, std::uint32_t sequence) {
    datagrams_.clear();
    position_ = 0;
    overrun_ = answer.overrun;
    for (Message const& message : answer.othersMessages) datagrams_.push_back(message.framed(answer.sequenceOfOthers));
    Buffer datagram;
    std::uint16_t flags = answer.interrupted ? NLM_F_MULTI | NLM_F_DUMP_INTR : NLM_F_MULTI;
    for (Message const& message : answer.messages) {
      Buffer const bytes = message.framed(sequence, std::exchange(flags, NLM_F_MULTI));
      pad(datagram);
      datagram.insert(datagram.end(), bytes.begin(), bytes.end());
      if (datagram.size() < 4096) continue;
      datagrams_.push_back(std::exchange(datagram, {}));
    }
    if (!datagram.empty()) datagrams_.push_back(datagram);
    if (answer.overrun) return;
    datagrams_.push_back(Message{NLMSG_DONE, -answer.error}.framed(sequence, flags));
  }

  std::map<std::uint16_t, std::vector<Answer>> answers_;
  std::map<std::uint16_t, int> requests_;
  std::function<void(Buffer&)> spoil_;
  std::vector<Buffer> datagrams_;
  std::size_t position_ = 0;
  bool overrun_ = false;
  int reopened_ = 0;
};

}  // namespace Apps::Kernel
