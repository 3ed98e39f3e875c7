#pragma once

/// What has to be settled before the application object is made: names, the web engine's flags and
/// how windows are drawn.
void preparePlatform();
