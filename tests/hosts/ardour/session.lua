-- SPDX-License-Identifier: GPL-3.0-or-later
-- Makes a session with one track: the plug-in when one is named, and a synthesizer. What it needs to know is in the
-- environment: SESSION, the folder; FORMAT; PLUGIN, which may be empty.
local folder, format, plugin = os.getenv ("SESSION"), os.getenv ("FORMAT"), os.getenv ("PLUGIN")
local synthesizer = "https://community.ardour.org/node/7596"
local types = { vst3 = ARDOUR.PluginType.VST3, lv2 = ARDOUR.PluginType.LV2 }

-- Ardour would do this by itself, some time later.
local function connect (track)
    for channel = 0, 1 do
        local port = track:output ():audio (channel)
        local master = "Master/audio_in " .. channel + 1
        assert (port:connected_to (master) or port:connect (master) == 0, "the track is not connected")
    end
end

local function make ()
    local session = create_session (folder, "session", 48000)
    local midi = ARDOUR.ChanCount (ARDOUR.DataType ("midi"), 1)
    local track = session:new_midi_track (midi, midi, false, ARDOUR.PluginInfo (), nil, nil, 1, "Track",
        ARDOUR.PresentationInfo.max_order, ARDOUR.TrackMode.Normal, true):front ()
    local place = 0
    local function insert (name, kind)
        local processor = ARDOUR.LuaAPI.new_plugin (session, name, kind, "")
        assert (not processor:isnil (), "Ardour does not find " .. name)
        assert (track:add_processor_by_index (processor, place, nil, true) == 0, "Ardour does not insert " .. name)
        place = place + 1
    end
    if plugin ~= "" then
        insert (plugin, types[format])
    end
    insert (synthesizer, ARDOUR.PluginType.LV2)
    connect (track)
    assert (session:save_state ("") == 0, "the session is not saved")
    assert (io.open (folder .. "/made", "w")):close ()
end

-- Ardour's Lua has no exit status: a session that is all there has a file "made" in its folder.
local made, problem = pcall (make)
if not made then
    print (problem)
end
close_session ()
quit ()
