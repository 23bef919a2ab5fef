// ValueText: the text form of a value:
//   Value('Hardware::DornL3Unicast::FecCountStats', ** {'numNonEcmpFecs': 1, 'numEcmpFecs': 2, 'numFecEntries': 3})
// All attributes are written, in number order. The reader takes them in any order, with white space between all tokens.
// A bare value type has the text of its one attribute and nothing around it.
// Owner: a text is a value of its own. Thread: any, one at a time for each value. Re-entrancy: it calls nobody.
#pragma once

#include "dornl3/frame/Attribute.h"
#include "dornl3/platform/vek/TextReader.h"
#include "dornl3/text/ValueTextReader.h"

#include <ostream>

namespace Vek {

/// An integer attribute whose values are limited to min to max wherever a value is built from text.
template <class A>
concept Limited = requires {
  A::min;
  A::max;
};

namespace detail {

template <class A>
void writeAttribute(TextBuffer& out, typename A::Owner const& value) {
  using Field = typename A::Value;
  if constexpr (std::is_class_v<Field> && !std::is_same_v<Field, String8>) {
    out.append(valueToStrep(A::field(value)).view());
  } else {
    writeText(out, A::field(value));
  }
}

template <class... A, class V>
void writeAttributes(List<A...>, TextBuffer& out, V const& value) {
  char const* before = "'";
  ((out.append(before), out.append(A::name), out.append("': "), writeAttribute<A>(out, value), before = ", '"), ...);
}

template <class A, class V>
void readAttribute(ValueTextReader& in, V& value) {
  A::field(value) = deserializeAttr(in.it(), in.end(), static_cast<typename A::Value*>(nullptr), in.name());
}

template <class... A, class V>
bool readNamed(List<A...>, ValueTextReader& in, V& value) {
  std::string_view const name = in.name();
  return ((name == A::name && (readAttribute<A>(in, value), true)) || ...);
}

template <class A, class V>
void checkLimit(char const* type, V const& value) {
  if constexpr (Limited<A>) {
    long long const number = A::field(value);
    if (number < A::min || number > A::max) throwOutOfLimits(type, A::name, A::min, A::max);
  }
}

}  // namespace detail

/// Throws RangeException for the lowest-numbered attribute that is out of its limits.
template <class Attr, class X>
void checkLimits(X const& value) {
  forEach(typename Attr::All{},
          [&value](auto attribute) { detail::checkLimit<decltype(attribute)>(Attr::shortName, value); });
}

/// The text of a value.
template <class Attr, class X>
String8 valueText(X const& value) {
  TextBuffer out;
  if constexpr (Attr::bare) {
    forEach(typename Attr::All{}, [&](auto attribute) { detail::writeAttribute<decltype(attribute)>(out, value); });
  } else {
    out.append("Value('");
    out.append(Attr::fullName);
    out.append("', ** {");
    detail::writeAttributes(typename Attr::All{}, out, value);
    out.append("})");
  }
  return out.text();
}

/// Reads a value and leaves `it` behind it, and behind the blanks there. An attribute that the text does not name has
/// its default, one that it names twice the later value. Throws RangeException and leaves `it` at the place of the
/// failure; `value` is then not to be used.
template <class Attr, class X>
void readValueText(X& value, String8::IteratorConst& it, String8::IteratorConst const& end) {
  if constexpr (Attr::bare) {
    forEach(typename Attr::All{}, [&](auto attribute) {
      using A = decltype(attribute);
      A::field(value) = deserializeAttr(it, end, static_cast<typename A::Value*>(nullptr), A::name);
    });
  } else {
    ValueTextReader in{it, end, Attr::shortName, Attr::fullName};
    while (in.nextAttribute()) {
      if (!detail::readNamed(typename Attr::All{}, in, value)) in.throwNoSuchAttribute();
    }
    in.close();
    checkLimits<Attr>(value);
  }
}

/// Reads a whole text as a value of type X. Throws RangeException, also where text is left over.
template <class X>
[[nodiscard]] X valueFromText(String8 const& text) {
  String8::IteratorConst it{text};
  String8::IteratorConst const end = it.end();
  X value(it, end);
  needEnd(it, end);
  return value;
}

/// Writes a text to a stream as it is, whatever the stream's width and fill.
inline std::ostream& writeTo(std::ostream& os, String8 const& text) {
  return os.write(text.view().data(), static_cast<std::streamsize>(text.length()));
}

}  // namespace Vek
