<!DOCTYPE html>
<html>
<head><title>FRITZ!Box 7390</title></head>
<body>
<ul id="menu"><li><a href="/home/home.lua?sid={{session}}">Overview</a></li></ul>
<form name="main_form" method="POST" action="/internet/port_fw.lua" id="uiMainForm">
<h4>List of Port Sharing Rules</h4>
<table id="uiPortRules" class="zebra">
<tr><th>Active</th><th>Name</th><th>Protocol</th><th>Port</th><th>to Computer</th><th>to Port</th><th></th></tr>
{{each rules}}
<tr><td><input type="checkbox" name="active_{{index}}" value="1" {{rule.enabled|yes=checked|no=}}></td><td title="{{rule.name}}">{{rule.name}}</td><td>{{rule.protocol}}</td><td>{{rule.ports}}</td><td>{{rule.address}}</td><td>{{rule.start}}</td>
<td><button type="submit" name="edit" value="rule{{index}}">Edit</button> <button type="submit" name="delete" value="{{index}}" onclick="return confirm('Are you sure that you want to delete this rule?')">Delete</button></td></tr>
{{none}}<tr><td colspan="7">No port sharing rules are set up.</td></tr>
{{end}}
</table>
<button type="submit" name="new_rule" id="uiNewRule">New Port Sharing Rule</button>
<div id="btn_form_foot">
<input type="hidden" name="sid" value="{{session}}">
<button type="submit" name="apply" id="uiApply">Apply</button>
<button type="submit" name="cancel">Cancel</button>
</div>
</form>
</body>
</html>
