// The keyword tables behind CParseCommandLine::ProcessParameter. Each table is a chain of rules
// tested in order; the first rule whose names match the key applies and ends the chain.
#pragma once

#include <vector>

#include "projects/common/ParseCommandLine.h"

struct ParameterKeywordTables {
  enum class Match {
    kExact,   // the key equals a name (case-insensitive)
    kKey3,    // the key's first three characters equal a name
    kBegins,  // the key begins with a name
  };
  using Handler = void (*)(CParseCommandLine&, const KeywordValue&);
  struct Rule {
    Match match;
    std::vector<const wchar_t*> names;
    Handler apply;
  };
  using Chain = std::vector<Rule>;

  // The long keywords are two chains, so that a key can match once in each (ParseCommandLineKeywords.cpp).
  static const Chain& FirstLongChain();
  static const Chain& SecondLongChain();
  // Keys of exactly two characters (ParseCommandLineShortKeys.cpp).
  static const Chain& TwoLetterChain();

  // Applies the first matching rule; false when none matched.
  static bool Run(const Chain& chain, CParseCommandLine& parameters, const KeywordValue& value);
};
