#include "vehicle/demo_setting.h"

namespace torvane::sim {

logdata::LogHeader DemoSetting() {
    using logdata::SettingWord;
    logdata::LogHeader setting = logdata::FreshSetting();
    const auto set = [&setting](SettingWord word, int value) {
        setting.SetWord(word, static_cast<std::int16_t>(value));
    };
    for (SettingWord word :
         {SettingWord::NeTime, SettingWord::ThTime, SettingWord::VfwTime, SettingWord::VrwTime,
          SettingWord::Vm1Time, SettingWord::Vm2Time, SettingWord::Vm3Time, SettingWord::Vm4Time}) {
        set(word, 10);
    }
    set(SettingWord::Deto1Time, 300);
    set(SettingWord::Deto2Time, 300);
    set(SettingWord::VbTime, 100);
    set(SettingWord::Sus, 3);
    set(SettingWord::Laf, 3);
    set(SettingWord::LapOn, 1);
    set(SettingWord::ThClose, 102);
    set(SettingWord::ThOpen, 758);
    set(SettingWord::FrZero, 900);
    set(SettingWord::RrZero, 850);
    set(SettingWord::Year, 2026);
    set(SettingWord::Month, 11);
    set(SettingWord::Day, 1);
    set(SettingWord::Hour, 10);
    set(SettingWord::Minute, 30);
    set(SettingWord::Reserved40, 10);
    return setting;
}

} // namespace torvane::sim
