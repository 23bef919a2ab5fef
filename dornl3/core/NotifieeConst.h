// PtrInterface::NotifieeConst: root of the reactors, the objects that hear of changes.
// A reactor points at its notifier and, when registered, stands on the notifier's list. By default it holds the
// notifier by a reference, so that the notifier cannot go before it.
// A weak one holds none, and ends with its notifier like this: on the notifier's list, it hears that the last reference
// has gone, then of the children that the destructor removes, and stands there until the list itself goes; from then on
// its notifier is null. If it leaves the list on the way, its notifier is null from then on. On no list it hears
// nothing, and must leave its notifier before that ends.
// Owner: whoever made the reactor; a list holds no reference on it. Thread: the notifier's.
// Re-entrancy: ReactorWalk tells what a reactor may do while it is called.
#pragma once

#include "dornl3/core/BitSet.h"
#include "dornl3/core/Name.h"
#include "dornl3/core/Ptr.h"

namespace Vek {

class Activity;
class ActivityConfig;
class ReactorChain;

class PtrInterface::NotifieeConst : public PtrInterface {
 public:
  /// Flags of a reactor: the framework's own state, and the caller's notification flags around it.
  class Vek_BitSet {
   public:
    constexpr Vek_BitSet() noexcept = default;
    constexpr explicit Vek_BitSet(U32 word) noexcept : word_(word) {}

    /// The positions that are notification flags.
    static constexpr U32 notificationBitMask() noexcept { return 0xfa8fffff; }
    /// Takes over the notification flags of `flags`, and keeps the state bits.
    constexpr void notificationFlagsIs(Vek_BitSet flags) noexcept {
      word_ = (flags.word_ & notificationBitMask()) | (word_ & ~notificationBitMask());
    }
    [[nodiscard]] constexpr U32 word() const noexcept { return word_; }
    [[nodiscard]] constexpr bool operator==(Vek_BitSet const&) const noexcept = default;

   private:
    friend class NotifieeConst;
    U32 word_ = 0;
  };

  ~NotifieeConst() override;

  /// Switches delivery. Off takes the reactor off its list and remembers whether it was registered; on registers it
  /// again if it was.
  void hasNotificationActiveIs(bool on) override;

  /// The object that this reactor works for: itself, or what an adapter forwards to. Counted, and raw.
  [[nodiscard]] virtual Ptr<NotifieeConst const> vekReactor() const;
  [[nodiscard]] virtual NotifieeConst const* vekRawReactor() const noexcept;
  /// Whether this object is the adapter of an attribute log; those are told first.
  [[nodiscard]] virtual bool isStreamAdapter() const noexcept;

  /// Wants to be on the notifier's list, or no longer does. Here: stores the wish. A weak reactor that leaves the list
  /// of a notifier that is going, or still in its constructor, no longer follows that.
  virtual void isRegisteredNotifieeIs(bool on) const;
  [[nodiscard]] bool isRegisteredNotifiee() const noexcept { return registered_; }

  [[nodiscard]] Vek_BitSet vek_bitSet() const noexcept { return flags_; }
  /// Takes over the notification flags of `flags`.
  virtual void vek_bitSetIs(Vek_BitSet flags);

  /// The name of the notifier; empty without one.
  [[nodiscard]] virtual Name name() const;

  /// Follows `n`, or nobody when null: takes a reference on it and gives the one on the old notifier back.
  virtual void notifierIs(Ptr<PtrInterface const> const& n);
  [[nodiscard]] PtrInterface const* rawNotifier() const noexcept { return notifier_; }

  /// Whether the reactor does without a reference on its notifier. Changing it gives back or takes that reference.
  [[nodiscard]] bool isWeakReference() const noexcept { return weak_; }
  void isWeakReferenceIs(bool on);

  /// Delivers what was put off until an activity ran, and takes it off the pending attribute. Here: all of it ends in
  /// handleDefault.
  virtual void handleNotification(ActivityConfig* config);
  /// The end of a delivery that nobody else has taken: of attribute `id` by onAttribute; of a sweep, and of nothing in
  /// particular, which is 0, by onNotification.
  virtual void handleDefault(ActivityConfig* config, AttributeId id, bool isSweep);

  /// Some attribute has changed; what a delivery by number calls.
  virtual void onAttribute(AttributeId id);
  /// Something has changed.
  virtual void onNotification();
  /// A member of the collection of that name has changed.
  virtual void onCollectionNotification(String8 collection);

  /// A call of this reactor threw. The walk goes on with the next reactor unless this throws too. The one with the
  /// attribute's number is called; by default it passes on to the one without, which accepts the exception.
  virtual void onNotificationException();
  virtual void onNotificationException(AttributeId id);
  virtual void handleNotificationException(AttributeId id);
  virtual void handleNotificationException();

  /// The notifier's last reference has gone. Whoever takes one now keeps it alive. If nobody does, its destructor runs:
  /// the reactors that this calls give back during the call what references they take. Here: a weak reactor on no list,
  /// which an adapter tells, lets its notifier go.
  virtual void onZeroReferences();

  /// The activity that puts this reactor's events off; null where they are told at once. A class whose reactors have
  /// one overrides the second, and the others follow; its destructor leaves the activity.
  [[nodiscard]] virtual Ptr<Activity> activityPtr() const;
  [[nodiscard]] virtual Activity* vekFwkActivity();
  [[nodiscard]] virtual Activity const* vekFwkActivity() const;
  /// The same, asked once for each delivery: what redispatch takes.
  [[nodiscard]] virtual Activity* actsm();

  /// What waits for the activity: an attribute's number, a sweep below, or 0 for nothing.
  [[nodiscard]] int vekPendingAttribute() const noexcept { return pendingAttribute_; }
  /// Every attribute that can have changed: all scalars, and the collections of which events wait.
  static constexpr int changedSweep = -1;
  /// Every attribute, changed or not.
  static constexpr int fullSweep = -2;

 protected:
  static constexpr U32 wasRegisteredBit = 0x00080000;
  static constexpr U32 logEnabledBit = 0x04000000;

  NotifieeConst() noexcept;

  /// Shared halves of the operations above for reactors whose notifier has a list: `listOf` finds it. They are what
  /// a typed reactor calls; the typed half is the run-time cast of the notifier.
  using ListOf = ReactorChain& (*)(PtrInterface const& notifier);
  void follow(PtrInterface const* notifier, ListOf listOf);
  void registerWith(bool on, ListOf listOf) const;
  void leaveForGood(ListOf listOf) noexcept;

  /// Whether the event of attribute `id` waits for the activity: then the caller says no more, and handleNotification
  /// delivers. `pending` counts what waits of one collection, up to its greatest number; null where nothing is counted.
  [[nodiscard]] bool vekOnAttribute(AttributeId id, U8* pending);
  /// In the middle of a delivery: the next event is told at once, if it is `activity` that delivers.
  void redispatch(Activity* activity) const;
  void vekPendingAttributeIs(int pending) noexcept { pendingAttribute_ = pending; }

  /// Sets or clears bits of the flags word, state bits too.
  void stateFlagsIs(U32 bits, bool on) noexcept { flags_.word_ = on ? flags_.word_ | bits : flags_.word_ & ~bits; }

 private:
  friend class ReactorChain;
  void notifierAssign(PtrInterface const* n);
  // The notifier is going: a weak reactor, which has no reference to give back, follows nobody from here on.
  void letNotifierGo() const noexcept {
    if (weak_) notifier_ = nullptr;
  }

  Vek_BitSet flags_{logEnabledBit};
  mutable PtrInterface const* notifier_ = nullptr;
  bool weak_ = false;
  mutable bool registered_ = false;
  int pendingAttribute_ = 0;
  mutable NotifieeConst const* next_ = nullptr;
};

}  // namespace Vek
