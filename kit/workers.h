// Work for several threads at once.

#ifndef PALVOR_KIT_WORKERS_H_
#define PALVOR_KIT_WORKERS_H_

#include <functional>

namespace kit {

// Calls `turn` again and again, from up to `threads` threads at once (1 or
// more), until it returns false, or throws, in each. As soon as a turn throws,
// no new one begins; the first exception is thrown on when all have ended.
void runWorkers(int threads, const std::function<bool()>& turn);

}  // namespace kit

#endif  // PALVOR_KIT_WORKERS_H_
