#include "kit/prepare/preparation.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "kit/amounts.h"
#include "kit/folders.h"
#include "kit/workers.h"

namespace kit {
namespace {

// Small arrays are in work side by side, up to so many characters a thread.
constexpr size_t kCharactersPerThread = size_t{1} << 20;

// Bytes of the program itself, and of each thread's buffers.
constexpr uint64_t kOwnBytes = 12'000'000;
constexpr uint64_t kThreadBytes = 4'000'000;

// Positions held at once are never fewer: going through the text for so few
// would take too long.
constexpr size_t kFewestPositions = size_t{1} << 20;

}  // namespace

uint64_t memoryNeed(uint64_t longest, uint64_t all, int jobs) {
  const auto threads = static_cast<uint64_t>(jobs);
  uint64_t sideBySide = longest;
  if (jobs > 1) {
    sideBySide =
        std::max(longest, std::min(all, kCharactersPerThread * threads));
  }
  return kOwnBytes + kThreadBytes * threads + 7 * sideBySide +
         (jobs > 1 ? longest / 4 : 0);
}

uint64_t leastMemoryNeed(uint64_t longest, int jobs) {
  const auto threads = static_cast<uint64_t>(jobs);
  return kOwnBytes + kThreadBytes * threads + longest / 4 * (jobs > 1 ? 2 : 1) +
         5 * kFewestPositions;
}

Preparation::Preparation(const PreparationPlan& plan, const DataFolder& folder,
                         Manifest& manifest)
    : plan_(plan),
      folder_(folder),
      manifest_(manifest),
      source_(plan.files, plan.rules,
              static_cast<int>(plan.base.inputsPerPsa.size()),
              static_cast<uint32_t>(plan.base.lengths.size())),
      index_(folder, plan.base),
      progress_(plan.progress) {}

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
  for (const std::string& other : manifest_.finish()) {
    removeFile(folder_.path() + "/" + other);
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
    } else if (ended_ && texts_.empty() && charactersInWork_ == 0) {
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
  return charactersInWork_ == 0 ||
         charactersInWork_ + texts_.front().characters <= most;
}

Preparation::Array* Preparation::arrayWithTasks() {
  for (const auto& array : arrays_) {
    if (array->taken < array->tasks) return array.get();
  }
  return nullptr;
}

void Preparation::readNext(std::unique_lock<std::mutex>& lock) {
  showProgress();
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
  const MemoryLimits limits = limitsFor(psa);
  HugeBuffer<uint32_t> positions;
  if (!spare_.empty()) {
    positions = std::move(spare_.back());
    spare_.pop_back();
  }
  lock.unlock();
  if (stands(psa)) {
    writeStrings(folder_, psa);
    lock.lock();
    for (const std::string& name : namesOf(psa)) manifest_.keep(name);
    resumed_++;
    charactersDone_ += psa.characters;
    charactersInWork_ -= psa.characters;
    spare_.push_back(std::move(positions));
    changed_.notify_all();
    return;
  }
  auto array = std::make_unique<Array>(folder_, std::move(psa), plan_.format,
                                       std::move(positions), limits,
                                       static_cast<size_t>(plan_.jobs));
  lock.lock();
  Array& added = *array;
  arrays_.push_back(std::move(array));
  enterStage(lock, added);
}

// Whether an interrupted run has left the text's array.
bool Preparation::stands(const PsaText& psa) const {
  if (!manifest_.resumed()) return false;
  const std::string inputs = checksumOfInputs(psa);
  const std::vector<std::string> names = namesOf(psa);
  return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
    return manifest_.stands(name, inputs);
  });
}

void Preparation::runTask(std::unique_lock<std::mutex>& lock, Array& array,
                          SortBuffers& buffers) {
  const size_t task = array.taken++;
  lock.unlock();
  const size_t sorted = array.maker.run(task, buffers);
  lock.lock();
  charactersDone_ += sorted;
  showProgress();
  if (++array.ended == array.tasks) enterStage(lock, array);
}

// Nobody else looks at an array whose tasks have ended.
void Preparation::enterStage(std::unique_lock<std::mutex>& lock, Array& array) {
  lock.unlock();
  const size_t tasks = array.maker.beginStage();
  std::vector<ManifestEntry> written;
  if (tasks == 0) {
    written = array.maker.written();
    const std::string inputs = checksumOfInputs(array.maker.text());
    for (ManifestEntry& entry : written) {
      entry.inputs = inputs;
      entry.source = array.maker.text().file;
    }
  }
  lock.lock();
  array.taken = array.ended = 0;
  array.tasks = tasks;
  if (tasks == 0) {
    manifest_.add(written);
    charactersInWork_ -= array.maker.text().characters;
    spare_.push_back(array.maker.takeBack());
    arrays_.erase(
        std::find_if(arrays_.begin(), arrays_.end(),
                     [&](const auto& other) { return other.get() == &array; }));
  }
  changed_.notify_all();
}

// What is left for an array's positions and buckets when the texts, this one
// and the one that is read meanwhile, have theirs.
MemoryLimits Preparation::limitsFor(const PsaText& psa) const {
  const auto threads = static_cast<size_t>(plan_.jobs);
  const size_t texts =
      psa.words.size() * sizeof(uint32_t) * (threads > 1 ? 2 : 1);
  const size_t taken = kOwnBytes + kThreadBytes * threads + texts;
  const size_t left = plan_.memory > taken ? plan_.memory - taken : 0;
  // 4 bytes a position, and one for the buckets that are being sorted.
  return {std::max(left / 5, kFewestPositions), left};
}

void Preparation::showProgress() {
  const uint64_t all = std::max(plan_.characters, charactersDone_);
  progress_.show(plan_.characters == 0
                     ? fmt::format("preparing, {} characters",
                                   roundNumber(charactersDone_))
                     : fmt::format("preparing, {}% of about {} characters{}",
                                   charactersDone_ * 100 / all,
                                   roundNumber(all),
                                   timeLeft(begun_, charactersDone_, all)));
}

// The files of an array that the manifest lists.
std::vector<std::string> Preparation::namesOf(const PsaText& psa) const {
  const auto number = static_cast<uint64_t>(psa.number);
  std::vector<std::string> names = {folder_.name(number, ".stpsa")};
  if (plan_.format.withLcp) names.push_back(folder_.name(number, ".stlcp"));
  return names;
}

}  // namespace kit
