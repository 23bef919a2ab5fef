// GenericIf: values and entities without their classes: every attribute by name or number, every value wrapped as a
// generic too. Owner: whoever holds a reference; a generic holds its own copy of a value, or its entity by a reference.
// Thread: the entity's. Re-entrancy: what changes an entity goes through its typed setters, see ReactorWalk.
#pragma once

#include "dornl3/core/LinkedQueue.h"
#include "dornl3/core/NotifieeConst.h"
#include "dornl3/platform/vek/GenericException.h"

namespace Vek {

class Activity;
class VekType;

/// Base of the reactors that may change their notifier.
class PtrInterface::Notifiee : public PtrInterface::NotifieeConst {
 public:
  ~Notifiee() override;
};

class GenericIf : public PtrInterface::Notifiee {
 public:
  /// What to do to an attribute. Codes from 128 up change it.
  using OpId = int;
  static constexpr OpId OpGet = 0;
  static constexpr OpId OpCount = 1;
  static constexpr OpId OpVersion = 2;
  static constexpr OpId OpContains = 3;
  static constexpr OpId OpEquals = 100;
  static constexpr OpId OpSet = 128;
  static constexpr OpId OpDel = 129;
  static constexpr OpId firstModifying = 128;

  struct AttributeOp {
    AttributeId attribute;
    OpId op;
  };

  class List;
  class List_;
  class AttributeIteratorConst;
  class AttributeIterator;
  class Position;
  class Subscriber;

  /// What attributeId gives for a name that it does not know.
  static constexpr AttributeId noAttribute = 0xffffffff;

  ~GenericIf() override;

  [[nodiscard]] VekType* fwkType() const override;
  /// The type of what is wrapped.
  [[nodiscard]] virtual VekType const* type() const = 0;
  /// The address of what is wrapped, borrowed, as an object of type `t`. Throws TypeException where it is none.
  [[nodiscard]] virtual void const* voidPtrIs(Ptr<VekType const> const& t) const = 0;
  [[nodiscard]] virtual String8 attributeString(AttributeId id) const;
  /// The number of the attribute of that name, exactly; noAttribute where there is none.
  [[nodiscard]] virtual AttributeId attributeId(String8 name) const;
  /// Does `op`, with a key where the attribute is a collection, and the value to set. Null where nothing comes back.
  /// Throws a GenericException, with nothing done, where key, value or operation do not fit.
  virtual Ptr<GenericIf> attributeOp(AttributeOp const& op, Ptr<GenericIf const> const& key,
                                     Ptr<GenericIf> const& value);
  /// The text of what is wrapped.
  [[nodiscard]] virtual String8 strRep() const = 0;
  /// Marks the generic for deletion or takes the mark back; a marked one hears nothing.
  virtual void vekDoZombieReactors(bool zombie);

  // Iterators over a collection; AttributeIteratorConst calls what takes one.
  /// Opens at the first member. Throws OpNotSupportedException where the attribute is no collection.
  [[nodiscard]] virtual AttributeIteratorConst attributeIteratorConst(AttributeId id) const;
  /// Opens at exactly that key, or at the end. Throws as well TypeException where the key does not fit.
  [[nodiscard]] virtual AttributeIteratorConst attributeIteratorKeyConst(AttributeId id,
                                                                         Ptr<GenericIf const> const& key) const;
  [[nodiscard]] virtual Ptr<GenericIf> attributeIterator_iterObj(AttributeIteratorConst const& it);
  [[nodiscard]] virtual Ptr<GenericIf const> attributeIterator_iterObj(AttributeIteratorConst const& it) const;
  virtual void* attributeIterator_iterInc(AttributeIteratorConst const& it) const;
  [[nodiscard]] virtual Ptr<GenericIf const> attributeIterator_iterKey(AttributeIteratorConst const& it) const;
  [[nodiscard]] virtual void* attributeIterator_iterClone(AttributeIteratorConst const& it) const;
  [[nodiscard]] virtual bool attributeIterator_nonNull(AttributeIteratorConst const& it) const;
  virtual void* attributeIterator_iterDel(AttributeIteratorConst const& it) const;
  /// The same two openings for who may change what the iterator meets.
  [[nodiscard]] virtual AttributeIterator attributeIterator(AttributeId id);
  [[nodiscard]] virtual AttributeIterator attributeIteratorKey(AttributeId id, Ptr<GenericIf const> const& key);

  /// Another generic of the same thing, as const as this one; of a value, with a copy of it.
  [[nodiscard]] virtual Ptr<GenericIf> clone() = 0;
  [[nodiscard]] Ptr<GenericIf> clone() const { return const_cast<GenericIf*>(this)->clone(); }

  /// An attribute has changed: the doors through which events leave. They tell the subscriber, if there is one.
  void onAttribute(AttributeId id) override;
  void onAttribute(AttributeId id, Ptr<GenericIf const> const& key);

  /// Whether what is wrapped may only be read; every generic that this one hands out is the same.
  [[nodiscard]] bool isConst() const noexcept { return isConst_; }

  /// Throws ConstException where `op` changes something and this generic may only be read.
  void needMutable(AttributeOp const& op) const;

  /// Who hears the events; not held. Either may go first.
  [[nodiscard]] Subscriber* subscriber() const noexcept { return subscriber_; }

  [[noreturn]] static void throwTypeException(String8 const& subject);
  [[noreturn]] static void throwConstException(String8 const& message);
  [[noreturn]] static void throwBadIndexAttrException(String8 const& attribute);
  [[noreturn]] static void throwOpNotSupportedException(String8 const& attribute, OpId code, bool);
  [[noreturn]] static void throwUnknownArgException(String8 const& subject);

 protected:
  explicit GenericIf(bool isConst) noexcept;

 private:
  friend class Subscriber;

  Subscriber* subscriber_ = nullptr;
  bool const isConst_;
};

/// Hears the events of one generic at a time. Made and owned by who listens; it may go before the generic or after it.
class GenericIf::Subscriber {
 public:
  Subscriber() noexcept = default;
  Subscriber(Subscriber const&) = delete;
  Subscriber& operator=(Subscriber const&) = delete;
  virtual ~Subscriber();

  /// Listens to `generic`, which loses the subscriber it had; to nothing for null. Takes no reference.
  void genericIs(GenericIf* generic) noexcept;
  [[nodiscard]] GenericIf* generic() const noexcept { return generic_; }

  /// Attribute `id` has changed; with a key, at that key. Without a key, of a collection: it may be anywhere.
  virtual void onAttribute(AttributeId id, Ptr<GenericIf const> const& key) = 0;

 private:
  friend class GenericIf;
  GenericIf* generic_ = nullptr;
};

/// Where an iterator stands in a collection.
class GenericIf::Position {
 public:
  Position() noexcept = default;
  Position(Position const&) = default;
  Position& operator=(Position const&) = delete;
  virtual ~Position();

  [[nodiscard]] virtual bool nonNull() const noexcept = 0;
  virtual void advance() = 0;
  /// The current key, const always, and the element; only where nonNull().
  [[nodiscard]] virtual Ptr<GenericIf const> key() const = 0;
  [[nodiscard]] virtual Ptr<GenericIf> object(bool isConst) const = 0;
  [[nodiscard]] virtual Position* clone() const = 0;
};

/// A walk over a collection, by the generic that opened it, which it keeps alive. What is added or removed meanwhile is
/// seen by the order of the collection.
class GenericIf::AttributeIteratorConst {
 public:
  /// Takes over the position.
  AttributeIteratorConst(Ptr<GenericIf const> owner, AttributeId attribute, void* state) noexcept
      : owner_(std::move(owner)), attribute_(attribute), state_(state) {}
  AttributeIteratorConst(AttributeIteratorConst const& other);
  AttributeIteratorConst(AttributeIteratorConst&& other) noexcept;
  AttributeIteratorConst& operator=(AttributeIteratorConst other) noexcept;
  ~AttributeIteratorConst();

  [[nodiscard]] Ptr<GenericIf const> const& owner() const noexcept { return owner_; }
  [[nodiscard]] AttributeId attribute() const noexcept { return attribute_; }
  [[nodiscard]] Position* position() const noexcept { return static_cast<Position*>(state_); }

  explicit operator bool() const { return owner_ && owner_->attributeIterator_nonNull(*this); }
  AttributeIteratorConst& operator++();
  /// Null at the end. Without write access to the collection's owner, what comes back is const.
  [[nodiscard]] Ptr<GenericIf const> key() const { return owner_->attributeIterator_iterKey(*this); }
  [[nodiscard]] Ptr<GenericIf const> object() const { return owner_->attributeIterator_iterObj(*this); }

 private:
  Ptr<GenericIf const> owner_;
  AttributeId attribute_;
  void* state_;
};

/// A walk opened by who may change what it meets: elements and children come as the generic hands them out.
class GenericIf::AttributeIterator : public GenericIf::AttributeIteratorConst {
 public:
  /// Takes over an iterator that a generic opened which is not const to the caller.
  explicit AttributeIterator(AttributeIteratorConst it) noexcept : AttributeIteratorConst(std::move(it)) {}

  /// Null at the end.
  [[nodiscard]] Ptr<GenericIf> object() const {
    return const_cast<GenericIf&>(*owner()).attributeIterator_iterObj(*this);
  }
};

/// A generic of that class, with notification on.
template <class G, class... Arguments>
[[nodiscard]] Ptr<G> activeGeneric(Arguments&&... arguments) {
  Ptr<G> const generic = make<G>(std::forward<Arguments>(arguments)...);
  generic->hasNotificationActiveIs(true);
  return generic;
}

/// A list of generics, for the arguments of constructors.
class GenericIf::List {
 public:
  class VekGenericIf final : public LinkedQueueElement<Ptr<GenericIf>> {
   public:
    using LinkedQueueElement::LinkedQueueElement;
  };
  using Queue = LinkedQueue<VekGenericIf, GenericIf, Ptr<GenericIf>>;

  /// The type record of lists.
  static VekType* _fwkType();
};

/// The generic that wraps a list.
class GenericIf::List_ final : public GenericIf {
 public:
  List_() noexcept : GenericIf(false) {}
  explicit List_(List::Queue const& queue) : GenericIf(false), queue_(queue) {}
  ~List_() override;

  [[nodiscard]] List::Queue& queue() noexcept { return queue_; }
  void enqueue(Ptr<GenericIf> const& argument) { queue_.enqueue(argument); }

  [[nodiscard]] VekType const* type() const override { return List::_fwkType(); }
  [[nodiscard]] void const* voidPtrIs(Ptr<VekType const> const& t) const override;
  [[nodiscard]] String8 strRep() const override;
  using GenericIf::clone;
  [[nodiscard]] Ptr<GenericIf> clone() override;

 private:
  List::Queue queue_;
};

}  // namespace Vek
