#pragma once

// The framework's start-up code for extension libraries has nothing to stand in for here.
