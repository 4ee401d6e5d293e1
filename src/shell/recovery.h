#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "docfiles/cut_snapshot.h"
#include "foundation/recovery_folder.h"
#include "platform/process.h"

namespace sorvel {

class MainFrame;

// Keeps what isn't saved: snapshots of the modified cuts, and of the list of a modified film, lie in a recovery folder
// until they are saved or closed. After a crash the next start opens them again.
//
// Everything here runs on the main thread but for the writing of files. Before Begin(), and if that failed, nothing is
// kept and all calls do nothing. The setting "autosave" says how many seconds after the last input snapshots are taken;
// with 0 they are taken only of what is opened again.
class Recovery {
 public:
  explicit Recovery(MainFrame* mainFrame) : frame(mainFrame) {}
  Recovery(const Recovery&) = delete;
  Recovery& operator=(const Recovery&) = delete;
  ~Recovery();

  // Where snapshots are written.
  enum class Writing { kInPlace, kOnThread };
  // Makes the recovery folder of this run in the store, a folder by its UTF-8 path. False if that fails.
  bool Begin(const std::string& store, Writing writing);
  // Opens what ended programs left in the store as changed documents; if `asks` is set, after a question whose No sends
  // all of it to the history. A film's list replaces that of the program only if `opensFilm` is set; else it goes to
  // the history too.
  void OpenLeft(bool asks, bool opensFilm);

  bool IsOn() const { return folder.IsOpen(); }

  // To be called every kTick milliseconds: takes snapshots a while after the last input, and in a long run of input
  // from time to time, but never during a stroke.
  void OnTimer();
  static constexpr uint32_t kTick = 500;
  // To be called after each action of a script: takes snapshots at once, but not during a stroke.
  void OnAction();

  // The document was saved or is closed: its snapshot goes.
  void ForgetCut(const Cut* cut);
  void ForgetFilm();

  // All documents are saved or closed: the folder goes.
  void End();
  // The program ends without asking: what is modified stays for the next start.
  void Leave();

  // Writes snapshots of all modified cuts at once, as far as that is still possible.
  void KeepAtCrash();

 private:
  using Clock = std::chrono::steady_clock;

  // A document in the folder. While the thread runs, the documents of the job are its own but for isGone.
  struct Kept {
    int32_t number = 0;
    const char* extension = nullptr;
    const Cut* cut = nullptr;  // null for the film
    std::string path;
    CutSnapshot snapshot;    // of a cut
    std::string text;        // of the film's file
    bool isWaiting = false;  // for being written
    bool isGone = false;
  };

  // Takes a snapshot of each document that changed since its last one. False if there is more to do: the last snapshots
  // are still being written, or the time that this may take at once is over.
  bool KeepChanges();
  bool KeepCut(Cut* cut);
  void KeepFilm();

  // The document of a cut, or for null of the film; null if it isn't kept.
  Kept* Find(const Cut* cut);
  Kept* FindOrAdd(const Cut* cut, const char* extension);
  void Forget(Kept* document);

  // Writes what waits.
  void StartWriting();
  void WriteJob();
  // False if the thread is still busy after so many milliseconds.
  bool FinishWriting(int32_t milliseconds);

  bool KeepInHistory(const LeftDocument& document);

  MainFrame* frame;
  std::string storeFolder;
  RecoveryFolder folder;
  Writing writing = Writing::kInPlace;
  platform::ThreadHandle thread = nullptr;
  std::vector<std::unique_ptr<Kept>> documents;
  std::vector<Kept*> job;  // what the thread writes
  int32_t lastNumber = 0;
  size_t nextCut = 0;  // of the open ones, for KeepChanges()

  // What OnTimer() goes by.
  std::chrono::seconds pause{0};  // from the last input to a snapshot; 0 for none
  uint32_t seenInputs = 0;
  bool hasInput = false;  // since snapshots became due
  bool isDue = false;
  Clock::time_point firstInput;
  Clock::time_point lastInput;
};

}  // namespace sorvel
