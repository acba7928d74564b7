// Calls the effect as the bad host of tests/stress does. The bytes of the input are the host's decisions.

#include "tests/stress/Instance.h"

extern "C" AEffect* pluginMain(audioMasterCallback audioMaster);

namespace eq {

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    endProgram = [](int) { std::abort(); };
    longestCall = 3000;
    const Host host{pluginMain, *hostWindows()};
    choices().seed(1);
    choices().read({data, std::min<std::size_t>(size, 1024)});
    Instance steady(host, true);
    Instance other(host, false);
    while (choices().hasInput()) {
        Instance& instance = oneIn(3) ? steady : other;
        switch (below(6)) {
        case 0:
            instance.processBlock();
            break;
        case 1:
            instance.useParameters();
            break;
        case 2:
            instance.switchOff();
            break;
        case 3:
            instance.changeBlockSize();
            break;
        default:
            instance.command();
            break;
        }
    }
    return 0;
}

} // namespace eq
