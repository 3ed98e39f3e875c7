// A library of precompiled headers has to have a source.
