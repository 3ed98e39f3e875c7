#pragma once

/// Makes the Outfit faces that travel with the program known to it. Each step is written to
/// "plim_font.log" in the documents directory and to the log; nothing fails visibly: without a
/// face the system's own font stands in.
void registerOutfitFonts();
