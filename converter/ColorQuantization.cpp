#include "converter/ColorQuantization.h"

int g_ColorQuantization = 3;
