// The vectorization device of a vector run: the system's device, drawing into the process-wide
// output driver.
#include "converter/VectorizationObjects.h"
#include "vectorizer/ExGsSimpleDevice.h"

OdGsDevicePtr CreateVectorizationDevice() { return ExGsSimpleDevice::createObject(1); }
