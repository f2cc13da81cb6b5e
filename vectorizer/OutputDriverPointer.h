// The one output driver that the vectorizer pours primitives into. The converter sets it before
// it creates the vectorization device and keeps it valid until the device is released.
#pragma once

class TRANS_BASE2;

extern TRANS_BASE2* g_pOutputDriver;
