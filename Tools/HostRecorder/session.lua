-- For `ardour7-lua`: makes a session in the folder of the environment variable SESSION, with the effect on a track, or on as
-- many as TRACKS holds letters, each named by its letter.
local folder = os.getenv("SESSION")
local names = os.getenv("TRACKS") or "t"
AudioEngine:set_backend("None (Dummy)", "Unit-Test", "")
local s = create_session(folder, "ardour", 48000)
ARDOUR.LuaAPI.usleep(500000)
for name in names:gmatch(".") do
    local t = s:new_audio_track(2, 2, nil, 1, name, ARDOUR.PresentationInfo.max_order, ARDOUR.TrackMode.Normal, true):front()
    local p = ARDOUR.LuaAPI.new_plugin(s, "Brindle XEQ", ARDOUR.PluginType.LXVST, "")
    assert(not p:isnil(), "the scanner has not seen the plug-in")
    t:set_strict_io(true)
    t:add_processor_by_index(p, 0, nil, true)
    ARDOUR.LuaAPI.usleep(500000)
end
s:save_state("")
ARDOUR.LuaAPI.usleep(300000)
s = nil
collectgarbage()
close_session()
quit()
