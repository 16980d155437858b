<!DOCTYPE html>
<html>
<head><title>XFINITY</title></head>
<body>
<div id="nav"><ul><li><a href="at_a_glance.php">Gateway</a></li><li class="nav-advanced"><a href="javascript:;">Advanced</a><ul style="display:none"><li><a href="port_forwarding.php">Port Forwarding</a></li><li><a href="dmz.php">DMZ</a></li></ul></li></ul></div>
<div id="content"><h1>Gateway &gt; At a Glance</h1></div>
</body>
</html>
