#include "vectorizer/EntityRuleState.h"

EntityRuleState g_EntityRuleState;
std::string g_DefaultFontName = "Arial";
std::string g_DefaultItalicFontName = "Arial Italic";
