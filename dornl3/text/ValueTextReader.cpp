#include "dornl3/text/ValueTextReader.h"

#include "dornl3/core/Throwers.h"

namespace Vek {

ValueTextReader::ValueTextReader(String8::IteratorConst& it, String8::IteratorConst const& end, char const* shortName,
                                 char const* fullName)
    : it_(it), end_(end), shortName_(shortName) {
  needString(it_, end_, " Value");
  needString(it_, end_, " (");
  TextBuffer quotedName;
  for (std::string_view const piece :
       {std::string_view{" '"}, std::string_view{fullName}, std::string_view{"'\0", 2}}) {
    quotedName.append(piece);
  }
  needString(it_, end_, quotedName.view().data());
  needString(it_, end_, " ,");
  needString(it_, end_, " **");
  needString(it_, end_, " {");
}

bool ValueTextReader::nextAttribute() {
  needString(it_, end_, " ");
  if (it_ == end_) throwRangeException(format("premature end of value type %s", shortName_));
  if (it_.inside() && *it_ == '}') return false;
  if (!first_) needString(it_, end_, ", ");
  name_ = sequenceToValue(it_, end_, static_cast<String8*>(nullptr));
  needString(it_, end_, " : ");
  first_ = false;
  return true;
}

void ValueTextReader::close() {
  needString(it_, end_, "} ");
  needString(it_, end_, ") ");
}

void ValueTextReader::throwNoSuchAttribute() const {
  throwRangeException(format("%s has no such attribute: ", shortName_) + name_);
}

void throwOutOfLimits(char const* type, char const* attribute, U64 min, U64 max) {
  throwRangeException(format("%s::%s < %llu or > %llu not allowed", type, attribute, min, max));
}

}  // namespace Vek
