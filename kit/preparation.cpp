#include "kit/preparation.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

#include "kit/workers.h"

namespace kit {
namespace {

// Small arrays are in work side by side, up to so many characters a thread.
constexpr size_t kCharactersPerThread = size_t{1} << 20;

}  // namespace

Preparation::Preparation(const PreparationPlan& plan, const DataFolder& folder)
    : plan_(plan),
      folder_(folder),
      source_(plan.files, plan.rules),
      index_(folder) {}

void Preparation::run() {
  std::vector<std::unique_ptr<SortBuffers>> buffers;  // of threads at rest
  runWorkers(plan_.jobs, [&] {
    std::unique_ptr<SortBuffers> mine;
    {
      const std::lock_guard lock(mutex_);
      if (!buffers.empty()) {
        mine = std::move(buffers.back());
        buffers.pop_back();
      }
    }
    try {
      if (!mine) mine = std::make_unique<SortBuffers>();
      while (turn(*mine)) {
      }
    } catch (...) {
      const std::lock_guard lock(mutex_);
      failed_ = true;
      changed_.notify_all();
      throw;
    }
    return false;
  });
  if (summary().inputs == 0) {
    throw std::runtime_error("no A, C, G or T in any of the files");
  }
  index_.commit();
}

// Does one piece of work, or waits for one. False if there will be none.
bool Preparation::turn(SortBuffers& buffers) {
  std::unique_lock lock(mutex_);
  for (;;) {
    if (failed_) return false;
    // Whoever is alone reads only when there is nothing else to do.
    const bool mayRead = !reading_ && !ended_ && texts_.empty();
    Array* array = arrayWithTasks();
    if (mayRead && (plan_.jobs > 1 || arrays_.empty())) {
      readNext(lock);
    } else if (array != nullptr) {
      runTask(lock, *array, buffers);
    } else if (!texts_.empty() && mayBegin()) {
      begin(lock);
    } else if (ended_ && texts_.empty() && arrays_.empty()) {
      return false;
    } else {
      changed_.wait(lock);
      continue;
    }
    return true;
  }
}

// Whether memory is to be had for the next text's positions.
bool Preparation::mayBegin() const {
  const size_t most = kCharactersPerThread * static_cast<size_t>(plan_.jobs);
  return arrays_.empty() ||
         charactersInWork_ + texts_.front().characters <= most;
}

Preparation::Array* Preparation::arrayWithTasks() {
  for (const auto& array : arrays_) {
    if (array->taken < array->tasks) return array.get();
  }
  return nullptr;
}

void Preparation::readNext(std::unique_lock<std::mutex>& lock) {
  progress_.show("palvor-kit: preparing, " +
                 std::to_string(source_.filesRead()) + " of " +
                 std::to_string(plan_.files.size()) + " files read");
  reading_ = true;
  lock.unlock();
  PsaText psa;
  const bool found = source_.next(psa);
  if (found) index_.add(psa);
  lock.lock();
  reading_ = false;
  if (found) {
    texts_.push_back(std::move(psa));
  } else {
    ended_ = true;
  }
  changed_.notify_all();
}

// Begins the work on the next text.
void Preparation::begin(std::unique_lock<std::mutex>& lock) {
  PsaText psa = std::move(texts_.front());
  texts_.pop_front();
  charactersInWork_ += psa.characters;
  HugeBuffer<uint32_t> positions;
  if (!spare_.empty()) {
    positions = std::move(spare_.back());
    spare_.pop_back();
  }
  lock.unlock();
  writeStrings(folder_, psa);
  auto array = std::make_unique<Array>(
      folder_, std::move(psa), plan_.format, std::move(positions),
      std::numeric_limits<size_t>::max(), static_cast<size_t>(plan_.jobs));
  lock.lock();
  Array& added = *array;
  arrays_.push_back(std::move(array));
  enterStage(lock, added);
}

void Preparation::runTask(std::unique_lock<std::mutex>& lock, Array& array,
                          SortBuffers& buffers) {
  const size_t task = array.taken++;
  lock.unlock();
  array.maker.run(task, buffers);
  lock.lock();
  if (++array.ended == array.tasks) enterStage(lock, array);
}

// Nobody else looks at an array whose tasks have ended.
void Preparation::enterStage(std::unique_lock<std::mutex>& lock, Array& array) {
  lock.unlock();
  const size_t tasks = array.maker.beginStage();
  lock.lock();
  array.taken = array.ended = 0;
  array.tasks = tasks;
  if (tasks == 0) {
    charactersInWork_ -= array.maker.characters();
    spare_.push_back(array.maker.takeBack());
    arrays_.erase(
        std::find_if(arrays_.begin(), arrays_.end(),
                     [&](const auto& other) { return other.get() == &array; }));
  }
  changed_.notify_all();
}

}  // namespace kit
