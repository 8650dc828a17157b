"""openbox and xfce4-panel without a compositor: the item is a window in the panel's tray."""

import os

from session import X11Session

PANEL = """<?xml version="1.0"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="true"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="{size}"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray"/>
  </property>
</channel>
"""


class Desktop(X11Session):
    parts = ("openbox", "xfce4-panel")
    title = "docked"
    panel_command = "xfce4-panel --disable-wm-check"

    def write_settings(self):
        folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "xfce4/xfconf/xfce-perchannel-xml")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "xfce4-panel.xml"), "w", encoding="utf-8") as file:
            file.write(PANEL.format(size=self.panel_size * self.scale))
