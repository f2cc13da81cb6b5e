// Stands in for a layer that has no sources yet, so that every layer is a library from the start.
