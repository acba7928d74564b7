-- Puts the effect on a track of an Ardour session, or loads such a session.
--
--   make FOLDER SOUND RATE CHANNELS FRAMES P...    creates a session that plays the sound file with the parameters P...
--   load FOLDER                                    loads the session
--
-- Both commands print the effect's properties as Ardour reports them. The environment variable LV2_URI names an LV2
-- plug-in to use instead of the VST 2 effect. If ENABLED_PORT is set, the port of this number is automated. The port is
-- then 0 from frame BYPASS_START to frame BYPASS_END.

local command, folder, sound, rate, channels, frames = table.unpack(arg)
local session, effect
local uri = os.getenv("LV2_URI")

local function automate_bypass(port)
    local _, events = ARDOUR.LuaAPI.plugin_automation(effect, 13)
    events:add(Temporal.timepos_t(0), 1, false, true)
    events:add(Temporal.timepos_t(tonumber(os.getenv("BYPASS_START"))), 0, false, true)
    events:add(Temporal.timepos_t(tonumber(os.getenv("BYPASS_END"))), 1, false, true)
    local parameter = Evoral.Parameter(ARDOUR.AutomationType.PluginAutomation, 0, port)
    effect:to_automatable():automation_control(parameter, false):set_automation_state(ARDOUR.AutoState.Play)
end

local function make()
    session = create_session(folder, "session", tonumber(rate))
    local track = session:new_audio_track(channels, 2, nil, 1, "Track", ARDOUR.PresentationInfo.max_order,
                                          ARDOUR.TrackMode.Normal, true):front()
    effect = ARDOUR.LuaAPI.new_plugin(session, uri or "Parametric Equalizer",
                                      uri and ARDOUR.PluginType.LV2 or ARDOUR.PluginType.LXVST, "")
    assert(not effect:isnil(), "Ardour does not find the effect")
    track:add_processor_by_index(effect, 0, nil, true)
    for i = 7, #arg do
        ARDOUR.LuaAPI.set_processor_param(effect, i - 7, tonumber(arg[i]))
    end
    if os.getenv("ENABLED_PORT") then automate_bypass(tonumber(os.getenv("ENABLED_PORT"))) end
    for i = 0, 1 do
        track:output():audio(i):connect("Master/audio_in " .. i + 1)
    end
    session:save_state("", false, false, false, false, false)
end

local function print_effect()
    local insert = effect:to_insert()
    local plugin = insert:plugin(0)
    local id = uri and plugin:get_info().unique_id or string.format("0x%X", plugin:unique_id())
    print(string.format("%s, id %s, latency %d", plugin:name(), id, insert:signal_latency()))
    print(string.format("%d inputs, %d outputs, %d parameters", insert:input_streams():n_audio(),
                        insert:output_streams():n_audio(), plugin:parameter_count()))
    -- The ports of an LV2 plug-in also include the audio ports, which are the first, and the latency port, which is the
    -- last.
    local first = uri and insert:input_streams():n_audio() + insert:output_streams():n_audio() or 0
    local last = plugin:parameter_count() - (uri and 2 or 1)
    for i = first, last do
        print(plugin:parameter_label(i) .. " = " .. ARDOUR.LuaAPI.get_processor_param(effect, i - first, true))
    end
end

-- Writes a sound into the file of the saved session, because scripts have no function that puts a sound on a track.
local function add_sound()
    local length = string.format("a%d", frames * 282240000 // rate)
    local sources, used = "", ""
    for i = 0, channels - 1 do
        sources = sources .. string.format('<Source name="sound" type="audio" flags="" id="100%d" channel="%d" origin="%s"/>',
                                           i, i, sound)
        used = used .. string.format(' source-%d="100%d" master-source-%d="100%d"', i, i, i, i)
    end
    local region = '<Region name="sound" type="audio" id="%d" whole-file="%d" external="1" opaque="1" start="a0" length="' ..
                   length .. '@a0" position="a0" channels="' .. channels .. '"' .. used ..
                   ' fade-in-active="0" fade-out-active="0"/>'
    local name = folder .. "/session.ardour"
    local text = io.open(name):read("a")
    text = text:gsub("<Sources/>", "<Sources>" .. sources .. "</Sources>")
    text = text:gsub("<Regions/>", "<Regions>" .. region:format(2000, 1) .. "</Regions>")
    text = text:gsub("<Locations/>", '<Locations><Location id="3000" name="session" start="a0" end="' .. length ..
                                     '" flags="IsSessionRange" locked="0"/></Locations>')
    text = text:gsub('(<Playlist [^>]*name="Track"[^>]*)/>', "%1>" .. region:format(2001, 0) .. "</Playlist>")
    io.open(name, "w"):write(text):close()
end

if command == "make" then
    make()
else
    session = load_session(folder, "session")
    effect = session:route_by_name("Track"):nth_plugin(0)
end
print_effect()
close_session()
if command == "make" then add_sound() end
