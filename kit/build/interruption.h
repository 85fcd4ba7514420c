// What somebody is told who interrupts a build.

#ifndef PALVOR_KIT_BUILD_INTERRUPTION_H_
#define PALVOR_KIT_BUILD_INTERRUPTION_H_

namespace kit {

// While there is one, SIGINT and SIGTERM end the program with a line that says
// how to go on.
class InterruptionNote {
 public:
  InterruptionNote();
  ~InterruptionNote();
  InterruptionNote(const InterruptionNote&) = delete;
  InterruptionNote& operator=(const InterruptionNote&) = delete;
};

}  // namespace kit

#endif  // PALVOR_KIT_BUILD_INTERRUPTION_H_
