#include "dornl3/platform/vek/GenericIf.h"

#include "dornl3/platform/vek/NamedType.h"

#include <utility>

namespace Vek {

PtrInterface::Notifiee::~Notifiee() = default;

GenericIf::GenericIf(bool isConst) noexcept : isConst_(isConst) {}

GenericIf::~GenericIf() {
  if (subscriber_ != nullptr) subscriber_->generic_ = nullptr;
}

VekType* GenericIf::fwkType() const { return const_cast<VekType*>(type()); }

String8 GenericIf::attributeString(AttributeId id) const {
  VekAttr const* const attr = type()->attribute(id);
  return attr == nullptr ? String8("unknown") : String8(attr->name());
}

AttributeId GenericIf::attributeId(String8 name) const {
  VekAttr const* const attr = const_cast<VekType*>(type())->type_Attr().attr(Name(name));
  return attr == nullptr ? noAttribute : attr->id();
}

void GenericIf::needMutable(AttributeOp const& op) const {
  if (op.op >= firstModifying && isConst_) throwConstException("attempting to modify a const instance");
}

Ptr<GenericIf> GenericIf::attributeOp(AttributeOp const& op, Ptr<GenericIf const> const&, Ptr<GenericIf> const&) {
  needMutable(op);
  String8 const name = attributeString(op.attribute);
  throwOpNotSupportedException(type()->attribute(op.attribute) == nullptr ? format("attribute %u", op.attribute) : name,
                               op.op, false);
}

void GenericIf::vekDoZombieReactors(bool zombie) {
  if (zombie != vekMarkedForDeletion()) vekMarkedForDeletionIs(zombie);
}

GenericIf::AttributeIteratorConst GenericIf::attributeIteratorConst(AttributeId id) const {
  throwOpNotSupportedException(attributeString(id) + ", which is no collection,", OpGet, false);
}

GenericIf::AttributeIteratorConst GenericIf::attributeIteratorKeyConst(AttributeId id,
                                                                       Ptr<GenericIf const> const&) const {
  return attributeIteratorConst(id);
}

GenericIf::AttributeIterator GenericIf::attributeIterator(AttributeId id) {
  return AttributeIterator(attributeIteratorConst(id));
}

GenericIf::AttributeIterator GenericIf::attributeIteratorKey(AttributeId id, Ptr<GenericIf const> const& key) {
  return AttributeIterator(attributeIteratorKeyConst(id, key));
}

Ptr<GenericIf> GenericIf::attributeIterator_iterObj(AttributeIteratorConst const& it) {
  return attributeIterator_nonNull(it) ? it.position()->object(isConst_) : Ptr<GenericIf>{};
}

Ptr<GenericIf const> GenericIf::attributeIterator_iterObj(AttributeIteratorConst const& it) const {
  return const_cast<GenericIf*>(this)->attributeIterator_iterObj(it);
}

void* GenericIf::attributeIterator_iterInc(AttributeIteratorConst const& it) const {
  it.position()->advance();
  return nullptr;
}

Ptr<GenericIf const> GenericIf::attributeIterator_iterKey(AttributeIteratorConst const& it) const {
  return attributeIterator_nonNull(it) ? it.position()->key() : Ptr<GenericIf const>{};
}

void* GenericIf::attributeIterator_iterClone(AttributeIteratorConst const& it) const {
  return it.position() == nullptr ? nullptr : it.position()->clone();
}

bool GenericIf::attributeIterator_nonNull(AttributeIteratorConst const& it) const {
  return it.position() != nullptr && it.position()->nonNull();
}

void* GenericIf::attributeIterator_iterDel(AttributeIteratorConst const& it) const {
  delete it.position();
  return nullptr;
}

void GenericIf::onAttribute(AttributeId id) { onAttribute(id, nullptr); }

void GenericIf::onAttribute(AttributeId id, Ptr<GenericIf const> const& key) {
  if (subscriber_ != nullptr) subscriber_->onAttribute(id, key);
}

void GenericIf::throwTypeException(String8 const& subject) { throw TypeException(subject); }
void GenericIf::throwConstException(String8 const& message) { throw ConstException(message); }
void GenericIf::throwBadIndexAttrException(String8 const& attribute) { throw BadIndexAttrException(attribute); }
void GenericIf::throwOpNotSupportedException(String8 const& attribute, OpId code, bool) {
  throw OpNotSupportedException(attribute, code);
}
void GenericIf::throwUnknownArgException(String8 const& subject) { throw UnknownArgException(subject); }

GenericIf::Subscriber::~Subscriber() { genericIs(nullptr); }

void GenericIf::Subscriber::genericIs(GenericIf* generic) noexcept {
  if (generic == generic_) return;
  if (generic_ != nullptr) generic_->subscriber_ = nullptr;
  generic_ = generic;
  if (generic == nullptr) return;
  if (generic->subscriber_ != nullptr) generic->subscriber_->generic_ = nullptr;
  generic->subscriber_ = this;
}

GenericIf::Position::~Position() = default;

GenericIf::AttributeIteratorConst::AttributeIteratorConst(AttributeIteratorConst const& other)
    : owner_(other.owner_), attribute_(other.attribute_), state_(nullptr) {
  if (owner_) state_ = owner_->attributeIterator_iterClone(other);
}

GenericIf::AttributeIteratorConst::AttributeIteratorConst(AttributeIteratorConst&& other) noexcept
    : owner_(std::move(other.owner_)), attribute_(other.attribute_), state_(std::exchange(other.state_, nullptr)) {}

GenericIf::AttributeIteratorConst& GenericIf::AttributeIteratorConst::operator=(AttributeIteratorConst other) noexcept {
  std::swap(owner_, other.owner_);
  std::swap(attribute_, other.attribute_);
  std::swap(state_, other.state_);
  return *this;
}

GenericIf::AttributeIteratorConst::~AttributeIteratorConst() {
  if (owner_) owner_->attributeIterator_iterDel(*this);
}

GenericIf::AttributeIteratorConst& GenericIf::AttributeIteratorConst::operator++() {
  owner_->attributeIterator_iterInc(*this);
  return *this;
}

VekType* GenericIf::List::_fwkType() {
  static VekType* const type = namedType("Vek::GenericIf::List", sizeof(Queue));
  return type;
}

GenericIf::List_::~List_() = default;

void const* GenericIf::List_::voidPtrIs(Ptr<VekType const> const& t) const {
  if (t.ptr() != List::_fwkType()) throwTypeException("Vek::GenericIf::List_");
  return &queue_;
}

String8 GenericIf::List_::strRep() const {
  String8 text = "[";
  for (List::VekGenericIf const* at = queue_.head(); at != nullptr; at = List::Queue::next(*at)) {
    if (at != queue_.head()) text += ", ";
    text += at->value() ? at->value()->strRep() : String8("None");
  }
  return text + "]";
}

Ptr<GenericIf> GenericIf::List_::clone() { return make<List_>(queue_); }

}  // namespace Vek
