#include "vectorizer/OutputDriverPointer.h"

TRANS_BASE2* g_pOutputDriver = nullptr;
