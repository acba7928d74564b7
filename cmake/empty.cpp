// A target that only compiles headers for other targets has this source.
