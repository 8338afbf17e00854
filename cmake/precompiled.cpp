// The source that a library of precompiled headers has to have.
