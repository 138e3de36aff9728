/* quilon page; contains three.js (MIT) and uPlot (MIT), see web/LICENSES */
(()=>{function Tm(i){let t=atob(i),e=new Uint8Array(t.length);for(let n=0;n<e.length;++n)e[n]=t.charCodeAt(n);return e}async function _l(i){let t=new Blob([i]).stream().pipeThrough(new DecompressionStream("deflate"));return new Uint8Array(await new Response(t).arrayBuffer())}function xl(i,t){let e=i.length/t,n=t===4?new Uint32Array(e):new Uint16Array(e),s=0;for(let r=0;r<e;++r){let o=i[r]|i[e+r]<<8;t===4&&(o|=i[2*e+r]<<16|i[3*e+r]<<24),s=s+o>>>0,t===2&&(s&=65535),n[r]=s}return n}function Am(i,t){let e=i.length/t;return Array.from({length:t},(n,s)=>i.subarray(s*e,(s+1)*e))}function Cm(i,t,e){let n=i.length/e;return Array.from({length:e},(s,r)=>{let o=t.getFloat64(16*r,!0),a=t.getFloat64(16*r+8,!0),l=new Float32Array(n);for(let c=0;c<n;++c){let u=i[r*n+c];l[c]=u===65535?NaN:o+u/65534*(a-o)}return l})}function $r(i,t){let e=new i.constructor(i.length+t.length);return e.set(i),e.set(t,i.length),e}var Io=class{constructor(t){this.bits=t.bits,this.base=t.base,this.columns=new Map,this.bytes=0,this.hasInside=!1}async read(t){if(this.base===void 0)return Tm(document.getElementById(`blob${t}`).textContent);let e=await fetch(`${this.base}${t}`);if(!e.ok)throw new Error(`the server answers ${e.status}: ${await e.text()}`);return new Uint8Array(await e.arrayBuffer())}async integers(t){return xl(await _l(await this.read(t)),4)}async decode(t,e,n){let s=await this.read(t);if(n===32)return Am(new Float32Array(xl(await _l(s),4).buffer),e);let r=new DataView(s.buffer,s.byteOffset,16*e);return Cm(xl(await _l(s.subarray(16*e)),2),r,e)}values(t,e,n=this.bits){return this.keep(t,()=>this.decode(t,e,n))}joined(t,e,n){return this.keep(`${t}, ${e}`,async()=>{let[s,r]=await Promise.all([t,e].map(o=>this.decode(o,n,this.bits)));return s.map((o,a)=>$r(o,r[a]))})}async keep(t,e){let n=this.columns.get(t);n?this.columns.delete(t):(n=await e(),this.drop(t),this.bytes+=n[0].length*4*n.length),this.columns.set(t,n);for(let s of this.columns.keys()){if(this.bytes<=256e6||s===t)break;this.drop(s)}return n}drop(t){let e=this.columns.get(t);e&&(this.bytes-=e[0].length*4*e.length,this.columns.delete(t))}};function rt(i,t={},...e){let[n,...s]=i.split("."),r=document.createElement(n);s.length&&(r.className=s.join(" "));for(let[o,a]of Object.entries(t))o.startsWith("on")?r.addEventListener(o.slice(2),a):a===!0?r.setAttribute(o,""):a!==!1&&a!==null&&a!==void 0&&r.setAttribute(o,String(a));return r.append(...e.filter(o=>o!=null).map(Du)),r}var Du=i=>i instanceof Node?i:document.createTextNode(String(i));function In(i,...t){i.replaceChildren(...t.map(Du))}var Nu=0;function _i(i,t){return t.id||=`control${++Nu}`,rt("div.control",{},rt("label",{for:t.id},i),t)}function vl(i,t,e){let n=rt("input",{type:"checkbox",id:`control${++Nu}`,onchange:()=>e(n.checked)});return n.checked=t,rt("div.check",{},n,rt("label",{for:n.id},i))}function Qs(i,t,e){let n=rt("select",{onchange:()=>e(n.value)});return yl(n,i,t),n}function yl(i,t,e){In(i,...t.map(n=>rt("option",{value:n.value},n.text))),i.value=e}function Ei(i,t,e){return rt("div.scroll",{tabindex:0,role:"region","aria-label":i},rt("table",{},rt("caption",{},i),rt("thead",{},rt("tr",{},...t.map(n=>rt("th",{scope:"col"},n)))),rt("tbody",{},...e.map(n=>rt("tr",{},...n.map(s=>rt(typeof s=="number"?"td.number":"td",{},typeof s=="number"?s:s??"")))))))}function Ti(i,t,e,n,s,r){let o=Math.max(Math.abs(i),Math.abs(t),Math.abs(e),Math.abs(n),Math.abs(s),Math.abs(r));if(!(o>0))return[o,o,o];let a=(i+t+e)/3,l=(i-a)/o,c=(t-a)/o,u=(e-a)/o,f=n/o,h=s/o,d=r/o,_=(l*l+c*c+u*u)/2+f*f+h*h+d*d,x=Math.sqrt(_/3);if(x===0)return[a,a,a];let m=l*(c*u-h*h)-f*(f*u-h*d)+d*(f*h-c*d),p=Math.acos(Math.max(-1,Math.min(1,m/(2*x**3))))/3,T=w=>a+o*2*x*Math.cos(p+w);return[T(0),T(-2*Math.PI/3),T(2*Math.PI/3)]}var Zr=(i,t,e,n,s,r)=>Math.sqrt(((i-t)**2+(t-e)**2+(e-i)**2)/2+3*(n*n+s*s+r*r)),Rm=([i,t,e])=>Math.sqrt((i-t)**2+(t-e)**2+(e-i)**2)/3,Uu=(...i)=>{let[t,,e]=Ti(...i);return t>=-e*(1-1e-6)?Zr(...i):-Zr(...i)},Ml={p1:(...i)=>Ti(...i)[0],p2:(...i)=>Ti(...i)[1],p3:(...i)=>Ti(...i)[2],mises:Zr,"signed-mises":Uu,tresca:(...i)=>Ti(...i)[0]-Ti(...i)[2],"max-shear":(...i)=>(Ti(...i)[0]-Ti(...i)[2])/2,hydrostatic:(i,t,e)=>(i+t+e)/3,"octahedral-shear":(...i)=>Rm(Ti(...i)),triaxiality:(...i)=>(i[0]+i[1]+i[2])/3/Zr(...i),"equivalent-strain":(...i)=>2/3*Zr(...i)},Pm={...Ml,mises:Ml["equivalent-strain"],"signed-mises":(...i)=>2/3*Uu(...i)};function Ou(i){return i.all.filter(t=>i.components.includes(t)||Fu(i,t))}function Fu(i,t){if(i.components.length===3&&t==="magnitude")return(e,n,s)=>Math.hypot(e,n,s);if(i.components.length===6)return(i.isStrain?Pm:Ml)[t]}function Sl(i,t,e){let n=i.components.indexOf(e);if(n>=0)return t[n];let s=Fu(i,e),r=new t[0].constructor(t[0].length);if(t.length===3){let[o,a,l]=t;for(let c=0;c<r.length;++c)r[c]=s(o[c],a[c],l[c])}else{let[o,a,l,c,u,f]=t;for(let h=0;h<r.length;++h)r[h]=s(o[h],a[h],l[h],c[h],u[h],f[h])}return r}var Bu=(i,t)=>Float64Array.from(i,(e,n)=>t[n]-e),bl=class{constructor(t,e,n){this.blobs=t,this.header=e,this.inside=n,this.name=e.name,this.title=e.name,this.ofElements=e.ofElements,this.components=Ou(e),this.start=e.start}has(t,e=0){return this.header.blobs[t]!=null&&(e===0||this.header.differences?.[t]!=null)}read(t,e){let n=this.header[t][e],{length:s}=this.header.components;return this.blobs.hasInside?this.blobs.joined(n,this.inside[t][e],s):this.blobs.values(n,s)}async columns(t,e=0){if(!this.has(t,e))return null;let n=await this.read("blobs",t);if(e===0)return n;let s=await this.read("differences",t);return n.map((r,o)=>Float64Array.from(r,(a,l)=>a+s[o][l]))}async values(t,e,n=0){let s=await this.columns(t,n);return s&&Sl(this.header,s,e)}async differences(t,e){if(!this.has(t,1))return null;let n=this.header.components.indexOf(e);if(n>=0)return(await this.read("differences",t))[n];let s=(await this.columns(t)).map(r=>Float64Array.from(r));return Bu(Sl(this.header,s,e),await this.values(t,e,1))}},wl=class{constructor(t){this.variance=t,this.name=t.name.replace("-variance","-spread"),this.title=`${this.name} (standard deviation)`,this.ofElements=t.ofElements,this.components=["largest",...t.header.components],this.start="largest"}has(t,e){return this.variance.has(t,e)}async values(t,e,n){let s=await this.variance.columns(t,n);if(!s)return null;let r=e==="largest"?s:[s[this.variance.header.components.indexOf(e)]];return Float32Array.from(s[0],(o,a)=>Math.sqrt(Math.max(...r.map(l=>l[a]))))}},Jr=class{constructor(t,e,n){this.first=t,this.second=e,this.name=n,this.title=n,this.ofElements=t.field.ofElements,this.components=t.field.components,this.start=t.field.start}has(t){return this.first.field.has(t,this.first.side)&&this.second.field.has(t,this.second.side)}async values(t,e){let{field:n}=this.first;if(n===this.second.field&&n.differences)return n.differences(t,e);let[s,r]=await Promise.all([this.first,this.second].map(({field:o,side:a})=>o.values(t,e,a)));return s&&r&&Bu(s,r)}};function ku(i,t){let e=t.fields.map((o,a)=>new bl(i,o,t.inside?.fields[a])),n=o=>e.find(a=>a.name===o),s=[...e];for(let o of e)/-variance($|-)/.test(o.name)&&o.header.components.length===6&&s.push(new wl(o));let r=new Map;for(let o of["nodal-stress","nodal-strain"]){let[a,l]=[n(o),n(`${o}-solver`)];a&&l&&r.set(a,l)}return{fields:s,displacement:e.find(o=>o.header.onf===510),solver:r}}var gh="170",Ds={LEFT:0,MIDDLE:1,RIGHT:2,ROTATE:0,DOLLY:1,PAN:2},Ns={ROTATE:0,PAN:1,DOLLY_PAN:2,DOLLY_ROTATE:3},Im=0,zu=1,Lm=2;var $f=1,Dm=2,Li=3,is=0,Tn=1,si=2,es=0,_r=1,Vu=2,Hu=3,Gu=4,Nm=5,Ss=100,Um=101,Om=102,Fm=103,Bm=104,km=200,zm=201,Vm=202,Hm=203,tc=204,ec=205,Gm=206,Wm=207,Xm=208,Ym=209,qm=210,$m=211,Zm=212,Jm=213,Km=214,nc=0,ic=1,sc=2,Mr=3,rc=4,oc=5,ac=6,lc=7,Zf=0,jm=1,Qm=2,ns=0,tg=1,eg=2,ng=3,ig=4,sg=5,rg=6,og=7;var Jf=300,Sr=301,br=302,cc=303,hc=304,La=306,uc=1e3,Es=1001,fc=1002,Un=1003,ag=1004;var Lo=1005;var qn=1006,El=1007;var Ts=1008;var Oi=1009,Kf=1010,jf=1011,ao=1012,_h=1013,As=1014,Di=1015,po=1016,xh=1017,vh=1018,wr=1020,Qf=35902,td=1021,ed=1022,ri=1023,nd=1024,id=1025,xr=1026,Er=1027,sd=1028,yh=1029,rd=1030,Mh=1031;var Sh=1033,sa=33776,ra=33777,oa=33778,aa=33779,dc=35840,pc=35841,mc=35842,gc=35843,_c=36196,xc=37492,vc=37496,yc=37808,Mc=37809,Sc=37810,bc=37811,wc=37812,Ec=37813,Tc=37814,Ac=37815,Cc=37816,Rc=37817,Pc=37818,Ic=37819,Lc=37820,Dc=37821,la=36492,Nc=36494,Uc=36495,od=36283,Oc=36284,Fc=36285,Bc=36286;var ca=2300,kc=2301,Tl=2302,Wu=2400,Xu=2401,Yu=2402;var lg=3200,cg=3201;var hg=0,ug=1,ts="",Yn="srgb",rs="srgb-linear",Da="linear",Ee="srgb";var tr=7680;var qu=519,fg=512,dg=513,pg=514,ad=515,mg=516,gg=517,_g=518,xg=519,$u=35044;var Zu="300 es",Ni=2e3,ha=2001,Fi=class{addEventListener(t,e){this._listeners===void 0&&(this._listeners={});let n=this._listeners;n[t]===void 0&&(n[t]=[]),n[t].indexOf(e)===-1&&n[t].push(e)}hasEventListener(t,e){if(this._listeners===void 0)return!1;let n=this._listeners;return n[t]!==void 0&&n[t].indexOf(e)!==-1}removeEventListener(t,e){if(this._listeners===void 0)return;let s=this._listeners[t];if(s!==void 0){let r=s.indexOf(e);r!==-1&&s.splice(r,1)}}dispatchEvent(t){if(this._listeners===void 0)return;let n=this._listeners[t.type];if(n!==void 0){t.target=this;let s=n.slice(0);for(let r=0,o=s.length;r<o;r++)s[r].call(this,t);t.target=null}}},un=["00","01","02","03","04","05","06","07","08","09","0a","0b","0c","0d","0e","0f","10","11","12","13","14","15","16","17","18","19","1a","1b","1c","1d","1e","1f","20","21","22","23","24","25","26","27","28","29","2a","2b","2c","2d","2e","2f","30","31","32","33","34","35","36","37","38","39","3a","3b","3c","3d","3e","3f","40","41","42","43","44","45","46","47","48","49","4a","4b","4c","4d","4e","4f","50","51","52","53","54","55","56","57","58","59","5a","5b","5c","5d","5e","5f","60","61","62","63","64","65","66","67","68","69","6a","6b","6c","6d","6e","6f","70","71","72","73","74","75","76","77","78","79","7a","7b","7c","7d","7e","7f","80","81","82","83","84","85","86","87","88","89","8a","8b","8c","8d","8e","8f","90","91","92","93","94","95","96","97","98","99","9a","9b","9c","9d","9e","9f","a0","a1","a2","a3","a4","a5","a6","a7","a8","a9","aa","ab","ac","ad","ae","af","b0","b1","b2","b3","b4","b5","b6","b7","b8","b9","ba","bb","bc","bd","be","bf","c0","c1","c2","c3","c4","c5","c6","c7","c8","c9","ca","cb","cc","cd","ce","cf","d0","d1","d2","d3","d4","d5","d6","d7","d8","d9","da","db","dc","dd","de","df","e0","e1","e2","e3","e4","e5","e6","e7","e8","e9","ea","eb","ec","ed","ee","ef","f0","f1","f2","f3","f4","f5","f6","f7","f8","f9","fa","fb","fc","fd","fe","ff"],Ju=1234567,so=Math.PI/180,lo=180/Math.PI;function Cr(){let i=Math.random()*4294967295|0,t=Math.random()*4294967295|0,e=Math.random()*4294967295|0,n=Math.random()*4294967295|0;return(un[i&255]+un[i>>8&255]+un[i>>16&255]+un[i>>24&255]+"-"+un[t&255]+un[t>>8&255]+"-"+un[t>>16&15|64]+un[t>>24&255]+"-"+un[e&63|128]+un[e>>8&255]+"-"+un[e>>16&255]+un[e>>24&255]+un[n&255]+un[n>>8&255]+un[n>>16&255]+un[n>>24&255]).toLowerCase()}function dn(i,t,e){return Math.max(t,Math.min(e,i))}function bh(i,t){return(i%t+t)%t}function vg(i,t,e,n,s){return n+(i-t)*(s-n)/(e-t)}function yg(i,t,e){return i!==t?(e-i)/(t-i):0}function ro(i,t,e){return(1-e)*i+e*t}function Mg(i,t,e,n){return ro(i,t,1-Math.exp(-e*n))}function Sg(i,t=1){return t-Math.abs(bh(i,t*2)-t)}function bg(i,t,e){return i<=t?0:i>=e?1:(i=(i-t)/(e-t),i*i*(3-2*i))}function wg(i,t,e){return i<=t?0:i>=e?1:(i=(i-t)/(e-t),i*i*i*(i*(i*6-15)+10))}function Eg(i,t){return i+Math.floor(Math.random()*(t-i+1))}function Tg(i,t){return i+Math.random()*(t-i)}function Ag(i){return i*(.5-Math.random())}function Cg(i){i!==void 0&&(Ju=i);let t=Ju+=1831565813;return t=Math.imul(t^t>>>15,t|1),t^=t+Math.imul(t^t>>>7,t|61),((t^t>>>14)>>>0)/4294967296}function Rg(i){return i*so}function Pg(i){return i*lo}function Ig(i){return(i&i-1)===0&&i!==0}function Lg(i){return Math.pow(2,Math.ceil(Math.log(i)/Math.LN2))}function Dg(i){return Math.pow(2,Math.floor(Math.log(i)/Math.LN2))}function Ng(i,t,e,n,s){let r=Math.cos,o=Math.sin,a=r(e/2),l=o(e/2),c=r((t+n)/2),u=o((t+n)/2),f=r((t-n)/2),h=o((t-n)/2),d=r((n-t)/2),_=o((n-t)/2);switch(s){case"XYX":i.set(a*u,l*f,l*h,a*c);break;case"YZY":i.set(l*h,a*u,l*f,a*c);break;case"ZXZ":i.set(l*f,l*h,a*u,a*c);break;case"XZX":i.set(a*u,l*_,l*d,a*c);break;case"YXY":i.set(l*d,a*u,l*_,a*c);break;case"ZYZ":i.set(l*_,l*d,a*u,a*c);break;default:console.warn("THREE.MathUtils: .setQuaternionFromProperEuler() encountered an unknown order: "+s)}}function pr(i,t){switch(t.constructor){case Float32Array:return i;case Uint32Array:return i/4294967295;case Uint16Array:return i/65535;case Uint8Array:return i/255;case Int32Array:return Math.max(i/2147483647,-1);case Int16Array:return Math.max(i/32767,-1);case Int8Array:return Math.max(i/127,-1);default:throw new Error("Invalid component type.")}}function yn(i,t){switch(t.constructor){case Float32Array:return i;case Uint32Array:return Math.round(i*4294967295);case Uint16Array:return Math.round(i*65535);case Uint8Array:return Math.round(i*255);case Int32Array:return Math.round(i*2147483647);case Int16Array:return Math.round(i*32767);case Int8Array:return Math.round(i*127);default:throw new Error("Invalid component type.")}}var ld={DEG2RAD:so,RAD2DEG:lo,generateUUID:Cr,clamp:dn,euclideanModulo:bh,mapLinear:vg,inverseLerp:yg,lerp:ro,damp:Mg,pingpong:Sg,smoothstep:bg,smootherstep:wg,randInt:Eg,randFloat:Tg,randFloatSpread:Ag,seededRandom:Cg,degToRad:Rg,radToDeg:Pg,isPowerOfTwo:Ig,ceilPowerOfTwo:Lg,floorPowerOfTwo:Dg,setQuaternionFromProperEuler:Ng,normalize:yn,denormalize:pr},ie=class i{constructor(t=0,e=0){i.prototype.isVector2=!0,this.x=t,this.y=e}get width(){return this.x}set width(t){this.x=t}get height(){return this.y}set height(t){this.y=t}set(t,e){return this.x=t,this.y=e,this}setScalar(t){return this.x=t,this.y=t,this}setX(t){return this.x=t,this}setY(t){return this.y=t,this}setComponent(t,e){switch(t){case 0:this.x=e;break;case 1:this.y=e;break;default:throw new Error("index is out of range: "+t)}return this}getComponent(t){switch(t){case 0:return this.x;case 1:return this.y;default:throw new Error("index is out of range: "+t)}}clone(){return new this.constructor(this.x,this.y)}copy(t){return this.x=t.x,this.y=t.y,this}add(t){return this.x+=t.x,this.y+=t.y,this}addScalar(t){return this.x+=t,this.y+=t,this}addVectors(t,e){return this.x=t.x+e.x,this.y=t.y+e.y,this}addScaledVector(t,e){return this.x+=t.x*e,this.y+=t.y*e,this}sub(t){return this.x-=t.x,this.y-=t.y,this}subScalar(t){return this.x-=t,this.y-=t,this}subVectors(t,e){return this.x=t.x-e.x,this.y=t.y-e.y,this}multiply(t){return this.x*=t.x,this.y*=t.y,this}multiplyScalar(t){return this.x*=t,this.y*=t,this}divide(t){return this.x/=t.x,this.y/=t.y,this}divideScalar(t){return this.multiplyScalar(1/t)}applyMatrix3(t){let e=this.x,n=this.y,s=t.elements;return this.x=s[0]*e+s[3]*n+s[6],this.y=s[1]*e+s[4]*n+s[7],this}min(t){return this.x=Math.min(this.x,t.x),this.y=Math.min(this.y,t.y),this}max(t){return this.x=Math.max(this.x,t.x),this.y=Math.max(this.y,t.y),this}clamp(t,e){return this.x=Math.max(t.x,Math.min(e.x,this.x)),this.y=Math.max(t.y,Math.min(e.y,this.y)),this}clampScalar(t,e){return this.x=Math.max(t,Math.min(e,this.x)),this.y=Math.max(t,Math.min(e,this.y)),this}clampLength(t,e){let n=this.length();return this.divideScalar(n||1).multiplyScalar(Math.max(t,Math.min(e,n)))}floor(){return this.x=Math.floor(this.x),this.y=Math.floor(this.y),this}ceil(){return this.x=Math.ceil(this.x),this.y=Math.ceil(this.y),this}round(){return this.x=Math.round(this.x),this.y=Math.round(this.y),this}roundToZero(){return this.x=Math.trunc(this.x),this.y=Math.trunc(this.y),this}negate(){return this.x=-this.x,this.y=-this.y,this}dot(t){return this.x*t.x+this.y*t.y}cross(t){return this.x*t.y-this.y*t.x}lengthSq(){return this.x*this.x+this.y*this.y}length(){return Math.sqrt(this.x*this.x+this.y*this.y)}manhattanLength(){return Math.abs(this.x)+Math.abs(this.y)}normalize(){return this.divideScalar(this.length()||1)}angle(){return Math.atan2(-this.y,-this.x)+Math.PI}angleTo(t){let e=Math.sqrt(this.lengthSq()*t.lengthSq());if(e===0)return Math.PI/2;let n=this.dot(t)/e;return Math.acos(dn(n,-1,1))}distanceTo(t){return Math.sqrt(this.distanceToSquared(t))}distanceToSquared(t){let e=this.x-t.x,n=this.y-t.y;return e*e+n*n}manhattanDistanceTo(t){return Math.abs(this.x-t.x)+Math.abs(this.y-t.y)}setLength(t){return this.normalize().multiplyScalar(t)}lerp(t,e){return this.x+=(t.x-this.x)*e,this.y+=(t.y-this.y)*e,this}lerpVectors(t,e,n){return this.x=t.x+(e.x-t.x)*n,this.y=t.y+(e.y-t.y)*n,this}equals(t){return t.x===this.x&&t.y===this.y}fromArray(t,e=0){return this.x=t[e],this.y=t[e+1],this}toArray(t=[],e=0){return t[e]=this.x,t[e+1]=this.y,t}fromBufferAttribute(t,e){return this.x=t.getX(e),this.y=t.getY(e),this}rotateAround(t,e){let n=Math.cos(e),s=Math.sin(e),r=this.x-t.x,o=this.y-t.y;return this.x=r*n-o*s+t.x,this.y=r*s+o*n+t.y,this}random(){return this.x=Math.random(),this.y=Math.random(),this}*[Symbol.iterator](){yield this.x,yield this.y}},te=class i{constructor(t,e,n,s,r,o,a,l,c){i.prototype.isMatrix3=!0,this.elements=[1,0,0,0,1,0,0,0,1],t!==void 0&&this.set(t,e,n,s,r,o,a,l,c)}set(t,e,n,s,r,o,a,l,c){let u=this.elements;return u[0]=t,u[1]=s,u[2]=a,u[3]=e,u[4]=r,u[5]=l,u[6]=n,u[7]=o,u[8]=c,this}identity(){return this.set(1,0,0,0,1,0,0,0,1),this}copy(t){let e=this.elements,n=t.elements;return e[0]=n[0],e[1]=n[1],e[2]=n[2],e[3]=n[3],e[4]=n[4],e[5]=n[5],e[6]=n[6],e[7]=n[7],e[8]=n[8],this}extractBasis(t,e,n){return t.setFromMatrix3Column(this,0),e.setFromMatrix3Column(this,1),n.setFromMatrix3Column(this,2),this}setFromMatrix4(t){let e=t.elements;return this.set(e[0],e[4],e[8],e[1],e[5],e[9],e[2],e[6],e[10]),this}multiply(t){return this.multiplyMatrices(this,t)}premultiply(t){return this.multiplyMatrices(t,this)}multiplyMatrices(t,e){let n=t.elements,s=e.elements,r=this.elements,o=n[0],a=n[3],l=n[6],c=n[1],u=n[4],f=n[7],h=n[2],d=n[5],_=n[8],x=s[0],m=s[3],p=s[6],T=s[1],w=s[4],b=s[7],D=s[2],L=s[5],I=s[8];return r[0]=o*x+a*T+l*D,r[3]=o*m+a*w+l*L,r[6]=o*p+a*b+l*I,r[1]=c*x+u*T+f*D,r[4]=c*m+u*w+f*L,r[7]=c*p+u*b+f*I,r[2]=h*x+d*T+_*D,r[5]=h*m+d*w+_*L,r[8]=h*p+d*b+_*I,this}multiplyScalar(t){let e=this.elements;return e[0]*=t,e[3]*=t,e[6]*=t,e[1]*=t,e[4]*=t,e[7]*=t,e[2]*=t,e[5]*=t,e[8]*=t,this}determinant(){let t=this.elements,e=t[0],n=t[1],s=t[2],r=t[3],o=t[4],a=t[5],l=t[6],c=t[7],u=t[8];return e*o*u-e*a*c-n*r*u+n*a*l+s*r*c-s*o*l}invert(){let t=this.elements,e=t[0],n=t[1],s=t[2],r=t[3],o=t[4],a=t[5],l=t[6],c=t[7],u=t[8],f=u*o-a*c,h=a*l-u*r,d=c*r-o*l,_=e*f+n*h+s*d;if(_===0)return this.set(0,0,0,0,0,0,0,0,0);let x=1/_;return t[0]=f*x,t[1]=(s*c-u*n)*x,t[2]=(a*n-s*o)*x,t[3]=h*x,t[4]=(u*e-s*l)*x,t[5]=(s*r-a*e)*x,t[6]=d*x,t[7]=(n*l-c*e)*x,t[8]=(o*e-n*r)*x,this}transpose(){let t,e=this.elements;return t=e[1],e[1]=e[3],e[3]=t,t=e[2],e[2]=e[6],e[6]=t,t=e[5],e[5]=e[7],e[7]=t,this}getNormalMatrix(t){return this.setFromMatrix4(t).invert().transpose()}transposeIntoArray(t){let e=this.elements;return t[0]=e[0],t[1]=e[3],t[2]=e[6],t[3]=e[1],t[4]=e[4],t[5]=e[7],t[6]=e[2],t[7]=e[5],t[8]=e[8],this}setUvTransform(t,e,n,s,r,o,a){let l=Math.cos(r),c=Math.sin(r);return this.set(n*l,n*c,-n*(l*o+c*a)+o+t,-s*c,s*l,-s*(-c*o+l*a)+a+e,0,0,1),this}scale(t,e){return this.premultiply(Al.makeScale(t,e)),this}rotate(t){return this.premultiply(Al.makeRotation(-t)),this}translate(t,e){return this.premultiply(Al.makeTranslation(t,e)),this}makeTranslation(t,e){return t.isVector2?this.set(1,0,t.x,0,1,t.y,0,0,1):this.set(1,0,t,0,1,e,0,0,1),this}makeRotation(t){let e=Math.cos(t),n=Math.sin(t);return this.set(e,-n,0,n,e,0,0,0,1),this}makeScale(t,e){return this.set(t,0,0,0,e,0,0,0,1),this}equals(t){let e=this.elements,n=t.elements;for(let s=0;s<9;s++)if(e[s]!==n[s])return!1;return!0}fromArray(t,e=0){for(let n=0;n<9;n++)this.elements[n]=t[n+e];return this}toArray(t=[],e=0){let n=this.elements;return t[e]=n[0],t[e+1]=n[1],t[e+2]=n[2],t[e+3]=n[3],t[e+4]=n[4],t[e+5]=n[5],t[e+6]=n[6],t[e+7]=n[7],t[e+8]=n[8],t}clone(){return new this.constructor().fromArray(this.elements)}},Al=new te;function cd(i){for(let t=i.length-1;t>=0;--t)if(i[t]>=65535)return!0;return!1}function ua(i){return document.createElementNS("http://www.w3.org/1999/xhtml",i)}function Ug(){let i=ua("canvas");return i.style.display="block",i}var Ku={};function no(i){i in Ku||(Ku[i]=!0,console.warn(i))}function Og(i,t,e){return new Promise(function(n,s){function r(){switch(i.clientWaitSync(t,i.SYNC_FLUSH_COMMANDS_BIT,0)){case i.WAIT_FAILED:s();break;case i.TIMEOUT_EXPIRED:setTimeout(r,e);break;default:n()}}setTimeout(r,e)})}function Fg(i){let t=i.elements;t[2]=.5*t[2]+.5*t[3],t[6]=.5*t[6]+.5*t[7],t[10]=.5*t[10]+.5*t[11],t[14]=.5*t[14]+.5*t[15]}function Bg(i){let t=i.elements;t[11]===-1?(t[10]=-t[10]-1,t[14]=-t[14]):(t[10]=-t[10],t[14]=-t[14]+1)}var de={enabled:!0,workingColorSpace:rs,spaces:{},convert:function(i,t,e){return this.enabled===!1||t===e||!t||!e||(this.spaces[t].transfer===Ee&&(i.r=Ui(i.r),i.g=Ui(i.g),i.b=Ui(i.b)),this.spaces[t].primaries!==this.spaces[e].primaries&&(i.applyMatrix3(this.spaces[t].toXYZ),i.applyMatrix3(this.spaces[e].fromXYZ)),this.spaces[e].transfer===Ee&&(i.r=vr(i.r),i.g=vr(i.g),i.b=vr(i.b))),i},fromWorkingColorSpace:function(i,t){return this.convert(i,this.workingColorSpace,t)},toWorkingColorSpace:function(i,t){return this.convert(i,t,this.workingColorSpace)},getPrimaries:function(i){return this.spaces[i].primaries},getTransfer:function(i){return i===ts?Da:this.spaces[i].transfer},getLuminanceCoefficients:function(i,t=this.workingColorSpace){return i.fromArray(this.spaces[t].luminanceCoefficients)},define:function(i){Object.assign(this.spaces,i)},_getMatrix:function(i,t,e){return i.copy(this.spaces[t].toXYZ).multiply(this.spaces[e].fromXYZ)},_getDrawingBufferColorSpace:function(i){return this.spaces[i].outputColorSpaceConfig.drawingBufferColorSpace},_getUnpackColorSpace:function(i=this.workingColorSpace){return this.spaces[i].workingColorSpaceConfig.unpackColorSpace}};function Ui(i){return i<.04045?i*.0773993808:Math.pow(i*.9478672986+.0521327014,2.4)}function vr(i){return i<.0031308?i*12.92:1.055*Math.pow(i,.41666)-.055}var ju=[.64,.33,.3,.6,.15,.06],Qu=[.2126,.7152,.0722],tf=[.3127,.329],ef=new te().set(.4123908,.3575843,.1804808,.212639,.7151687,.0721923,.0193308,.1191948,.9505322),nf=new te().set(3.2409699,-1.5373832,-.4986108,-.9692436,1.8759675,.0415551,.0556301,-.203977,1.0569715);de.define({[rs]:{primaries:ju,whitePoint:tf,transfer:Da,toXYZ:ef,fromXYZ:nf,luminanceCoefficients:Qu,workingColorSpaceConfig:{unpackColorSpace:Yn},outputColorSpaceConfig:{drawingBufferColorSpace:Yn}},[Yn]:{primaries:ju,whitePoint:tf,transfer:Ee,toXYZ:ef,fromXYZ:nf,luminanceCoefficients:Qu,outputColorSpaceConfig:{drawingBufferColorSpace:Yn}}});var er,zc=class{static getDataURL(t){if(/^data:/i.test(t.src)||typeof HTMLCanvasElement>"u")return t.src;let e;if(t instanceof HTMLCanvasElement)e=t;else{er===void 0&&(er=ua("canvas")),er.width=t.width,er.height=t.height;let n=er.getContext("2d");t instanceof ImageData?n.putImageData(t,0,0):n.drawImage(t,0,0,t.width,t.height),e=er}return e.width>2048||e.height>2048?(console.warn("THREE.ImageUtils.getDataURL: Image converted to jpg for performance reasons",t),e.toDataURL("image/jpeg",.6)):e.toDataURL("image/png")}static sRGBToLinear(t){if(typeof HTMLImageElement<"u"&&t instanceof HTMLImageElement||typeof HTMLCanvasElement<"u"&&t instanceof HTMLCanvasElement||typeof ImageBitmap<"u"&&t instanceof ImageBitmap){let e=ua("canvas");e.width=t.width,e.height=t.height;let n=e.getContext("2d");n.drawImage(t,0,0,t.width,t.height);let s=n.getImageData(0,0,t.width,t.height),r=s.data;for(let o=0;o<r.length;o++)r[o]=Ui(r[o]/255)*255;return n.putImageData(s,0,0),e}else if(t.data){let e=t.data.slice(0);for(let n=0;n<e.length;n++)e instanceof Uint8Array||e instanceof Uint8ClampedArray?e[n]=Math.floor(Ui(e[n]/255)*255):e[n]=Ui(e[n]);return{data:e,width:t.width,height:t.height}}else return console.warn("THREE.ImageUtils.sRGBToLinear(): Unsupported image type. No color space conversion applied."),t}},kg=0,fa=class{constructor(t=null){this.isSource=!0,Object.defineProperty(this,"id",{value:kg++}),this.uuid=Cr(),this.data=t,this.dataReady=!0,this.version=0}set needsUpdate(t){t===!0&&this.version++}toJSON(t){let e=t===void 0||typeof t=="string";if(!e&&t.images[this.uuid]!==void 0)return t.images[this.uuid];let n={uuid:this.uuid,url:""},s=this.data;if(s!==null){let r;if(Array.isArray(s)){r=[];for(let o=0,a=s.length;o<a;o++)s[o].isDataTexture?r.push(Cl(s[o].image)):r.push(Cl(s[o]))}else r=Cl(s);n.url=r}return e||(t.images[this.uuid]=n),n}};function Cl(i){return typeof HTMLImageElement<"u"&&i instanceof HTMLImageElement||typeof HTMLCanvasElement<"u"&&i instanceof HTMLCanvasElement||typeof ImageBitmap<"u"&&i instanceof ImageBitmap?zc.getDataURL(i):i.data?{data:Array.from(i.data),width:i.width,height:i.height,type:i.data.constructor.name}:(console.warn("THREE.Texture: Unable to serialize Texture."),{})}var zg=0,On=class i extends Fi{constructor(t=i.DEFAULT_IMAGE,e=i.DEFAULT_MAPPING,n=Es,s=Es,r=qn,o=Ts,a=ri,l=Oi,c=i.DEFAULT_ANISOTROPY,u=ts){super(),this.isTexture=!0,Object.defineProperty(this,"id",{value:zg++}),this.uuid=Cr(),this.name="",this.source=new fa(t),this.mipmaps=[],this.mapping=e,this.channel=0,this.wrapS=n,this.wrapT=s,this.magFilter=r,this.minFilter=o,this.anisotropy=c,this.format=a,this.internalFormat=null,this.type=l,this.offset=new ie(0,0),this.repeat=new ie(1,1),this.center=new ie(0,0),this.rotation=0,this.matrixAutoUpdate=!0,this.matrix=new te,this.generateMipmaps=!0,this.premultiplyAlpha=!1,this.flipY=!0,this.unpackAlignment=4,this.colorSpace=u,this.userData={},this.version=0,this.onUpdate=null,this.isRenderTargetTexture=!1,this.pmremVersion=0}get image(){return this.source.data}set image(t=null){this.source.data=t}updateMatrix(){this.matrix.setUvTransform(this.offset.x,this.offset.y,this.repeat.x,this.repeat.y,this.rotation,this.center.x,this.center.y)}clone(){return new this.constructor().copy(this)}copy(t){return this.name=t.name,this.source=t.source,this.mipmaps=t.mipmaps.slice(0),this.mapping=t.mapping,this.channel=t.channel,this.wrapS=t.wrapS,this.wrapT=t.wrapT,this.magFilter=t.magFilter,this.minFilter=t.minFilter,this.anisotropy=t.anisotropy,this.format=t.format,this.internalFormat=t.internalFormat,this.type=t.type,this.offset.copy(t.offset),this.repeat.copy(t.repeat),this.center.copy(t.center),this.rotation=t.rotation,this.matrixAutoUpdate=t.matrixAutoUpdate,this.matrix.copy(t.matrix),this.generateMipmaps=t.generateMipmaps,this.premultiplyAlpha=t.premultiplyAlpha,this.flipY=t.flipY,this.unpackAlignment=t.unpackAlignment,this.colorSpace=t.colorSpace,this.userData=JSON.parse(JSON.stringify(t.userData)),this.needsUpdate=!0,this}toJSON(t){let e=t===void 0||typeof t=="string";if(!e&&t.textures[this.uuid]!==void 0)return t.textures[this.uuid];let n={metadata:{version:4.6,type:"Texture",generator:"Texture.toJSON"},uuid:this.uuid,name:this.name,image:this.source.toJSON(t).uuid,mapping:this.mapping,channel:this.channel,repeat:[this.repeat.x,this.repeat.y],offset:[this.offset.x,this.offset.y],center:[this.center.x,this.center.y],rotation:this.rotation,wrap:[this.wrapS,this.wrapT],format:this.format,internalFormat:this.internalFormat,type:this.type,colorSpace:this.colorSpace,minFilter:this.minFilter,magFilter:this.magFilter,anisotropy:this.anisotropy,flipY:this.flipY,generateMipmaps:this.generateMipmaps,premultiplyAlpha:this.premultiplyAlpha,unpackAlignment:this.unpackAlignment};return Object.keys(this.userData).length>0&&(n.userData=this.userData),e||(t.textures[this.uuid]=n),n}dispose(){this.dispatchEvent({type:"dispose"})}transformUv(t){if(this.mapping!==Jf)return t;if(t.applyMatrix3(this.matrix),t.x<0||t.x>1)switch(this.wrapS){case uc:t.x=t.x-Math.floor(t.x);break;case Es:t.x=t.x<0?0:1;break;case fc:Math.abs(Math.floor(t.x)%2)===1?t.x=Math.ceil(t.x)-t.x:t.x=t.x-Math.floor(t.x);break}if(t.y<0||t.y>1)switch(this.wrapT){case uc:t.y=t.y-Math.floor(t.y);break;case Es:t.y=t.y<0?0:1;break;case fc:Math.abs(Math.floor(t.y)%2)===1?t.y=Math.ceil(t.y)-t.y:t.y=t.y-Math.floor(t.y);break}return this.flipY&&(t.y=1-t.y),t}set needsUpdate(t){t===!0&&(this.version++,this.source.needsUpdate=!0)}set needsPMREMUpdate(t){t===!0&&this.pmremVersion++}};On.DEFAULT_IMAGE=null;On.DEFAULT_MAPPING=Jf;On.DEFAULT_ANISOTROPY=1;var De=class i{constructor(t=0,e=0,n=0,s=1){i.prototype.isVector4=!0,this.x=t,this.y=e,this.z=n,this.w=s}get width(){return this.z}set width(t){this.z=t}get height(){return this.w}set height(t){this.w=t}set(t,e,n,s){return this.x=t,this.y=e,this.z=n,this.w=s,this}setScalar(t){return this.x=t,this.y=t,this.z=t,this.w=t,this}setX(t){return this.x=t,this}setY(t){return this.y=t,this}setZ(t){return this.z=t,this}setW(t){return this.w=t,this}setComponent(t,e){switch(t){case 0:this.x=e;break;case 1:this.y=e;break;case 2:this.z=e;break;case 3:this.w=e;break;default:throw new Error("index is out of range: "+t)}return this}getComponent(t){switch(t){case 0:return this.x;case 1:return this.y;case 2:return this.z;case 3:return this.w;default:throw new Error("index is out of range: "+t)}}clone(){return new this.constructor(this.x,this.y,this.z,this.w)}copy(t){return this.x=t.x,this.y=t.y,this.z=t.z,this.w=t.w!==void 0?t.w:1,this}add(t){return this.x+=t.x,this.y+=t.y,this.z+=t.z,this.w+=t.w,this}addScalar(t){return this.x+=t,this.y+=t,this.z+=t,this.w+=t,this}addVectors(t,e){return this.x=t.x+e.x,this.y=t.y+e.y,this.z=t.z+e.z,this.w=t.w+e.w,this}addScaledVector(t,e){return this.x+=t.x*e,this.y+=t.y*e,this.z+=t.z*e,this.w+=t.w*e,this}sub(t){return this.x-=t.x,this.y-=t.y,this.z-=t.z,this.w-=t.w,this}subScalar(t){return this.x-=t,this.y-=t,this.z-=t,this.w-=t,this}subVectors(t,e){return this.x=t.x-e.x,this.y=t.y-e.y,this.z=t.z-e.z,this.w=t.w-e.w,this}multiply(t){return this.x*=t.x,this.y*=t.y,this.z*=t.z,this.w*=t.w,this}multiplyScalar(t){return this.x*=t,this.y*=t,this.z*=t,this.w*=t,this}applyMatrix4(t){let e=this.x,n=this.y,s=this.z,r=this.w,o=t.elements;return this.x=o[0]*e+o[4]*n+o[8]*s+o[12]*r,this.y=o[1]*e+o[5]*n+o[9]*s+o[13]*r,this.z=o[2]*e+o[6]*n+o[10]*s+o[14]*r,this.w=o[3]*e+o[7]*n+o[11]*s+o[15]*r,this}divide(t){return this.x/=t.x,this.y/=t.y,this.z/=t.z,this.w/=t.w,this}divideScalar(t){return this.multiplyScalar(1/t)}setAxisAngleFromQuaternion(t){this.w=2*Math.acos(t.w);let e=Math.sqrt(1-t.w*t.w);return e<1e-4?(this.x=1,this.y=0,this.z=0):(this.x=t.x/e,this.y=t.y/e,this.z=t.z/e),this}setAxisAngleFromRotationMatrix(t){let e,n,s,r,l=t.elements,c=l[0],u=l[4],f=l[8],h=l[1],d=l[5],_=l[9],x=l[2],m=l[6],p=l[10];if(Math.abs(u-h)<.01&&Math.abs(f-x)<.01&&Math.abs(_-m)<.01){if(Math.abs(u+h)<.1&&Math.abs(f+x)<.1&&Math.abs(_+m)<.1&&Math.abs(c+d+p-3)<.1)return this.set(1,0,0,0),this;e=Math.PI;let w=(c+1)/2,b=(d+1)/2,D=(p+1)/2,L=(u+h)/4,I=(f+x)/4,N=(_+m)/4;return w>b&&w>D?w<.01?(n=0,s=.707106781,r=.707106781):(n=Math.sqrt(w),s=L/n,r=I/n):b>D?b<.01?(n=.707106781,s=0,r=.707106781):(s=Math.sqrt(b),n=L/s,r=N/s):D<.01?(n=.707106781,s=.707106781,r=0):(r=Math.sqrt(D),n=I/r,s=N/r),this.set(n,s,r,e),this}let T=Math.sqrt((m-_)*(m-_)+(f-x)*(f-x)+(h-u)*(h-u));return Math.abs(T)<.001&&(T=1),this.x=(m-_)/T,this.y=(f-x)/T,this.z=(h-u)/T,this.w=Math.acos((c+d+p-1)/2),this}setFromMatrixPosition(t){let e=t.elements;return this.x=e[12],this.y=e[13],this.z=e[14],this.w=e[15],this}min(t){return this.x=Math.min(this.x,t.x),this.y=Math.min(this.y,t.y),this.z=Math.min(this.z,t.z),this.w=Math.min(this.w,t.w),this}max(t){return this.x=Math.max(this.x,t.x),this.y=Math.max(this.y,t.y),this.z=Math.max(this.z,t.z),this.w=Math.max(this.w,t.w),this}clamp(t,e){return this.x=Math.max(t.x,Math.min(e.x,this.x)),this.y=Math.max(t.y,Math.min(e.y,this.y)),this.z=Math.max(t.z,Math.min(e.z,this.z)),this.w=Math.max(t.w,Math.min(e.w,this.w)),this}clampScalar(t,e){return this.x=Math.max(t,Math.min(e,this.x)),this.y=Math.max(t,Math.min(e,this.y)),this.z=Math.max(t,Math.min(e,this.z)),this.w=Math.max(t,Math.min(e,this.w)),this}clampLength(t,e){let n=this.length();return this.divideScalar(n||1).multiplyScalar(Math.max(t,Math.min(e,n)))}floor(){return this.x=Math.floor(this.x),this.y=Math.floor(this.y),this.z=Math.floor(this.z),this.w=Math.floor(this.w),this}ceil(){return this.x=Math.ceil(this.x),this.y=Math.ceil(this.y),this.z=Math.ceil(this.z),this.w=Math.ceil(this.w),this}round(){return this.x=Math.round(this.x),this.y=Math.round(this.y),this.z=Math.round(this.z),this.w=Math.round(this.w),this}roundToZero(){return this.x=Math.trunc(this.x),this.y=Math.trunc(this.y),this.z=Math.trunc(this.z),this.w=Math.trunc(this.w),this}negate(){return this.x=-this.x,this.y=-this.y,this.z=-this.z,this.w=-this.w,this}dot(t){return this.x*t.x+this.y*t.y+this.z*t.z+this.w*t.w}lengthSq(){return this.x*this.x+this.y*this.y+this.z*this.z+this.w*this.w}length(){return Math.sqrt(this.x*this.x+this.y*this.y+this.z*this.z+this.w*this.w)}manhattanLength(){return Math.abs(this.x)+Math.abs(this.y)+Math.abs(this.z)+Math.abs(this.w)}normalize(){return this.divideScalar(this.length()||1)}setLength(t){return this.normalize().multiplyScalar(t)}lerp(t,e){return this.x+=(t.x-this.x)*e,this.y+=(t.y-this.y)*e,this.z+=(t.z-this.z)*e,this.w+=(t.w-this.w)*e,this}lerpVectors(t,e,n){return this.x=t.x+(e.x-t.x)*n,this.y=t.y+(e.y-t.y)*n,this.z=t.z+(e.z-t.z)*n,this.w=t.w+(e.w-t.w)*n,this}equals(t){return t.x===this.x&&t.y===this.y&&t.z===this.z&&t.w===this.w}fromArray(t,e=0){return this.x=t[e],this.y=t[e+1],this.z=t[e+2],this.w=t[e+3],this}toArray(t=[],e=0){return t[e]=this.x,t[e+1]=this.y,t[e+2]=this.z,t[e+3]=this.w,t}fromBufferAttribute(t,e){return this.x=t.getX(e),this.y=t.getY(e),this.z=t.getZ(e),this.w=t.getW(e),this}random(){return this.x=Math.random(),this.y=Math.random(),this.z=Math.random(),this.w=Math.random(),this}*[Symbol.iterator](){yield this.x,yield this.y,yield this.z,yield this.w}},Vc=class extends Fi{constructor(t=1,e=1,n={}){super(),this.isRenderTarget=!0,this.width=t,this.height=e,this.depth=1,this.scissor=new De(0,0,t,e),this.scissorTest=!1,this.viewport=new De(0,0,t,e);let s={width:t,height:e,depth:1};n=Object.assign({generateMipmaps:!1,internalFormat:null,minFilter:qn,depthBuffer:!0,stencilBuffer:!1,resolveDepthBuffer:!0,resolveStencilBuffer:!0,depthTexture:null,samples:0,count:1},n);let r=new On(s,n.mapping,n.wrapS,n.wrapT,n.magFilter,n.minFilter,n.format,n.type,n.anisotropy,n.colorSpace);r.flipY=!1,r.generateMipmaps=n.generateMipmaps,r.internalFormat=n.internalFormat,this.textures=[];let o=n.count;for(let a=0;a<o;a++)this.textures[a]=r.clone(),this.textures[a].isRenderTargetTexture=!0;this.depthBuffer=n.depthBuffer,this.stencilBuffer=n.stencilBuffer,this.resolveDepthBuffer=n.resolveDepthBuffer,this.resolveStencilBuffer=n.resolveStencilBuffer,this.depthTexture=n.depthTexture,this.samples=n.samples}get texture(){return this.textures[0]}set texture(t){this.textures[0]=t}setSize(t,e,n=1){if(this.width!==t||this.height!==e||this.depth!==n){this.width=t,this.height=e,this.depth=n;for(let s=0,r=this.textures.length;s<r;s++)this.textures[s].image.width=t,this.textures[s].image.height=e,this.textures[s].image.depth=n;this.dispose()}this.viewport.set(0,0,t,e),this.scissor.set(0,0,t,e)}clone(){return new this.constructor().copy(this)}copy(t){this.width=t.width,this.height=t.height,this.depth=t.depth,this.scissor.copy(t.scissor),this.scissorTest=t.scissorTest,this.viewport.copy(t.viewport),this.textures.length=0;for(let n=0,s=t.textures.length;n<s;n++)this.textures[n]=t.textures[n].clone(),this.textures[n].isRenderTargetTexture=!0;let e=Object.assign({},t.texture.image);return this.texture.source=new fa(e),this.depthBuffer=t.depthBuffer,this.stencilBuffer=t.stencilBuffer,this.resolveDepthBuffer=t.resolveDepthBuffer,this.resolveStencilBuffer=t.resolveStencilBuffer,t.depthTexture!==null&&(this.depthTexture=t.depthTexture.clone()),this.samples=t.samples,this}dispose(){this.dispatchEvent({type:"dispose"})}},Bi=class extends Vc{constructor(t=1,e=1,n={}){super(t,e,n),this.isWebGLRenderTarget=!0}},da=class extends On{constructor(t=null,e=1,n=1,s=1){super(null),this.isDataArrayTexture=!0,this.image={data:t,width:e,height:n,depth:s},this.magFilter=Un,this.minFilter=Un,this.wrapR=Es,this.generateMipmaps=!1,this.flipY=!1,this.unpackAlignment=1,this.layerUpdates=new Set}addLayerUpdate(t){this.layerUpdates.add(t)}clearLayerUpdates(){this.layerUpdates.clear()}};var Hc=class extends On{constructor(t=null,e=1,n=1,s=1){super(null),this.isData3DTexture=!0,this.image={data:t,width:e,height:n,depth:s},this.magFilter=Un,this.minFilter=Un,this.wrapR=Es,this.generateMipmaps=!1,this.flipY=!1,this.unpackAlignment=1}};var ai=class{constructor(t=0,e=0,n=0,s=1){this.isQuaternion=!0,this._x=t,this._y=e,this._z=n,this._w=s}static slerpFlat(t,e,n,s,r,o,a){let l=n[s+0],c=n[s+1],u=n[s+2],f=n[s+3],h=r[o+0],d=r[o+1],_=r[o+2],x=r[o+3];if(a===0){t[e+0]=l,t[e+1]=c,t[e+2]=u,t[e+3]=f;return}if(a===1){t[e+0]=h,t[e+1]=d,t[e+2]=_,t[e+3]=x;return}if(f!==x||l!==h||c!==d||u!==_){let m=1-a,p=l*h+c*d+u*_+f*x,T=p>=0?1:-1,w=1-p*p;if(w>Number.EPSILON){let D=Math.sqrt(w),L=Math.atan2(D,p*T);m=Math.sin(m*L)/D,a=Math.sin(a*L)/D}let b=a*T;if(l=l*m+h*b,c=c*m+d*b,u=u*m+_*b,f=f*m+x*b,m===1-a){let D=1/Math.sqrt(l*l+c*c+u*u+f*f);l*=D,c*=D,u*=D,f*=D}}t[e]=l,t[e+1]=c,t[e+2]=u,t[e+3]=f}static multiplyQuaternionsFlat(t,e,n,s,r,o){let a=n[s],l=n[s+1],c=n[s+2],u=n[s+3],f=r[o],h=r[o+1],d=r[o+2],_=r[o+3];return t[e]=a*_+u*f+l*d-c*h,t[e+1]=l*_+u*h+c*f-a*d,t[e+2]=c*_+u*d+a*h-l*f,t[e+3]=u*_-a*f-l*h-c*d,t}get x(){return this._x}set x(t){this._x=t,this._onChangeCallback()}get y(){return this._y}set y(t){this._y=t,this._onChangeCallback()}get z(){return this._z}set z(t){this._z=t,this._onChangeCallback()}get w(){return this._w}set w(t){this._w=t,this._onChangeCallback()}set(t,e,n,s){return this._x=t,this._y=e,this._z=n,this._w=s,this._onChangeCallback(),this}clone(){return new this.constructor(this._x,this._y,this._z,this._w)}copy(t){return this._x=t.x,this._y=t.y,this._z=t.z,this._w=t.w,this._onChangeCallback(),this}setFromEuler(t,e=!0){let n=t._x,s=t._y,r=t._z,o=t._order,a=Math.cos,l=Math.sin,c=a(n/2),u=a(s/2),f=a(r/2),h=l(n/2),d=l(s/2),_=l(r/2);switch(o){case"XYZ":this._x=h*u*f+c*d*_,this._y=c*d*f-h*u*_,this._z=c*u*_+h*d*f,this._w=c*u*f-h*d*_;break;case"YXZ":this._x=h*u*f+c*d*_,this._y=c*d*f-h*u*_,this._z=c*u*_-h*d*f,this._w=c*u*f+h*d*_;break;case"ZXY":this._x=h*u*f-c*d*_,this._y=c*d*f+h*u*_,this._z=c*u*_+h*d*f,this._w=c*u*f-h*d*_;break;case"ZYX":this._x=h*u*f-c*d*_,this._y=c*d*f+h*u*_,this._z=c*u*_-h*d*f,this._w=c*u*f+h*d*_;break;case"YZX":this._x=h*u*f+c*d*_,this._y=c*d*f+h*u*_,this._z=c*u*_-h*d*f,this._w=c*u*f-h*d*_;break;case"XZY":this._x=h*u*f-c*d*_,this._y=c*d*f-h*u*_,this._z=c*u*_+h*d*f,this._w=c*u*f+h*d*_;break;default:console.warn("THREE.Quaternion: .setFromEuler() encountered an unknown order: "+o)}return e===!0&&this._onChangeCallback(),this}setFromAxisAngle(t,e){let n=e/2,s=Math.sin(n);return this._x=t.x*s,this._y=t.y*s,this._z=t.z*s,this._w=Math.cos(n),this._onChangeCallback(),this}setFromRotationMatrix(t){let e=t.elements,n=e[0],s=e[4],r=e[8],o=e[1],a=e[5],l=e[9],c=e[2],u=e[6],f=e[10],h=n+a+f;if(h>0){let d=.5/Math.sqrt(h+1);this._w=.25/d,this._x=(u-l)*d,this._y=(r-c)*d,this._z=(o-s)*d}else if(n>a&&n>f){let d=2*Math.sqrt(1+n-a-f);this._w=(u-l)/d,this._x=.25*d,this._y=(s+o)/d,this._z=(r+c)/d}else if(a>f){let d=2*Math.sqrt(1+a-n-f);this._w=(r-c)/d,this._x=(s+o)/d,this._y=.25*d,this._z=(l+u)/d}else{let d=2*Math.sqrt(1+f-n-a);this._w=(o-s)/d,this._x=(r+c)/d,this._y=(l+u)/d,this._z=.25*d}return this._onChangeCallback(),this}setFromUnitVectors(t,e){let n=t.dot(e)+1;return n<Number.EPSILON?(n=0,Math.abs(t.x)>Math.abs(t.z)?(this._x=-t.y,this._y=t.x,this._z=0,this._w=n):(this._x=0,this._y=-t.z,this._z=t.y,this._w=n)):(this._x=t.y*e.z-t.z*e.y,this._y=t.z*e.x-t.x*e.z,this._z=t.x*e.y-t.y*e.x,this._w=n),this.normalize()}angleTo(t){return 2*Math.acos(Math.abs(dn(this.dot(t),-1,1)))}rotateTowards(t,e){let n=this.angleTo(t);if(n===0)return this;let s=Math.min(1,e/n);return this.slerp(t,s),this}identity(){return this.set(0,0,0,1)}invert(){return this.conjugate()}conjugate(){return this._x*=-1,this._y*=-1,this._z*=-1,this._onChangeCallback(),this}dot(t){return this._x*t._x+this._y*t._y+this._z*t._z+this._w*t._w}lengthSq(){return this._x*this._x+this._y*this._y+this._z*this._z+this._w*this._w}length(){return Math.sqrt(this._x*this._x+this._y*this._y+this._z*this._z+this._w*this._w)}normalize(){let t=this.length();return t===0?(this._x=0,this._y=0,this._z=0,this._w=1):(t=1/t,this._x=this._x*t,this._y=this._y*t,this._z=this._z*t,this._w=this._w*t),this._onChangeCallback(),this}multiply(t){return this.multiplyQuaternions(this,t)}premultiply(t){return this.multiplyQuaternions(t,this)}multiplyQuaternions(t,e){let n=t._x,s=t._y,r=t._z,o=t._w,a=e._x,l=e._y,c=e._z,u=e._w;return this._x=n*u+o*a+s*c-r*l,this._y=s*u+o*l+r*a-n*c,this._z=r*u+o*c+n*l-s*a,this._w=o*u-n*a-s*l-r*c,this._onChangeCallback(),this}slerp(t,e){if(e===0)return this;if(e===1)return this.copy(t);let n=this._x,s=this._y,r=this._z,o=this._w,a=o*t._w+n*t._x+s*t._y+r*t._z;if(a<0?(this._w=-t._w,this._x=-t._x,this._y=-t._y,this._z=-t._z,a=-a):this.copy(t),a>=1)return this._w=o,this._x=n,this._y=s,this._z=r,this;let l=1-a*a;if(l<=Number.EPSILON){let d=1-e;return this._w=d*o+e*this._w,this._x=d*n+e*this._x,this._y=d*s+e*this._y,this._z=d*r+e*this._z,this.normalize(),this}let c=Math.sqrt(l),u=Math.atan2(c,a),f=Math.sin((1-e)*u)/c,h=Math.sin(e*u)/c;return this._w=o*f+this._w*h,this._x=n*f+this._x*h,this._y=s*f+this._y*h,this._z=r*f+this._z*h,this._onChangeCallback(),this}slerpQuaternions(t,e,n){return this.copy(t).slerp(e,n)}random(){let t=2*Math.PI*Math.random(),e=2*Math.PI*Math.random(),n=Math.random(),s=Math.sqrt(1-n),r=Math.sqrt(n);return this.set(s*Math.sin(t),s*Math.cos(t),r*Math.sin(e),r*Math.cos(e))}equals(t){return t._x===this._x&&t._y===this._y&&t._z===this._z&&t._w===this._w}fromArray(t,e=0){return this._x=t[e],this._y=t[e+1],this._z=t[e+2],this._w=t[e+3],this._onChangeCallback(),this}toArray(t=[],e=0){return t[e]=this._x,t[e+1]=this._y,t[e+2]=this._z,t[e+3]=this._w,t}fromBufferAttribute(t,e){return this._x=t.getX(e),this._y=t.getY(e),this._z=t.getZ(e),this._w=t.getW(e),this._onChangeCallback(),this}toJSON(){return this.toArray()}_onChange(t){return this._onChangeCallback=t,this}_onChangeCallback(){}*[Symbol.iterator](){yield this._x,yield this._y,yield this._z,yield this._w}},H=class i{constructor(t=0,e=0,n=0){i.prototype.isVector3=!0,this.x=t,this.y=e,this.z=n}set(t,e,n){return n===void 0&&(n=this.z),this.x=t,this.y=e,this.z=n,this}setScalar(t){return this.x=t,this.y=t,this.z=t,this}setX(t){return this.x=t,this}setY(t){return this.y=t,this}setZ(t){return this.z=t,this}setComponent(t,e){switch(t){case 0:this.x=e;break;case 1:this.y=e;break;case 2:this.z=e;break;default:throw new Error("index is out of range: "+t)}return this}getComponent(t){switch(t){case 0:return this.x;case 1:return this.y;case 2:return this.z;default:throw new Error("index is out of range: "+t)}}clone(){return new this.constructor(this.x,this.y,this.z)}copy(t){return this.x=t.x,this.y=t.y,this.z=t.z,this}add(t){return this.x+=t.x,this.y+=t.y,this.z+=t.z,this}addScalar(t){return this.x+=t,this.y+=t,this.z+=t,this}addVectors(t,e){return this.x=t.x+e.x,this.y=t.y+e.y,this.z=t.z+e.z,this}addScaledVector(t,e){return this.x+=t.x*e,this.y+=t.y*e,this.z+=t.z*e,this}sub(t){return this.x-=t.x,this.y-=t.y,this.z-=t.z,this}subScalar(t){return this.x-=t,this.y-=t,this.z-=t,this}subVectors(t,e){return this.x=t.x-e.x,this.y=t.y-e.y,this.z=t.z-e.z,this}multiply(t){return this.x*=t.x,this.y*=t.y,this.z*=t.z,this}multiplyScalar(t){return this.x*=t,this.y*=t,this.z*=t,this}multiplyVectors(t,e){return this.x=t.x*e.x,this.y=t.y*e.y,this.z=t.z*e.z,this}applyEuler(t){return this.applyQuaternion(sf.setFromEuler(t))}applyAxisAngle(t,e){return this.applyQuaternion(sf.setFromAxisAngle(t,e))}applyMatrix3(t){let e=this.x,n=this.y,s=this.z,r=t.elements;return this.x=r[0]*e+r[3]*n+r[6]*s,this.y=r[1]*e+r[4]*n+r[7]*s,this.z=r[2]*e+r[5]*n+r[8]*s,this}applyNormalMatrix(t){return this.applyMatrix3(t).normalize()}applyMatrix4(t){let e=this.x,n=this.y,s=this.z,r=t.elements,o=1/(r[3]*e+r[7]*n+r[11]*s+r[15]);return this.x=(r[0]*e+r[4]*n+r[8]*s+r[12])*o,this.y=(r[1]*e+r[5]*n+r[9]*s+r[13])*o,this.z=(r[2]*e+r[6]*n+r[10]*s+r[14])*o,this}applyQuaternion(t){let e=this.x,n=this.y,s=this.z,r=t.x,o=t.y,a=t.z,l=t.w,c=2*(o*s-a*n),u=2*(a*e-r*s),f=2*(r*n-o*e);return this.x=e+l*c+o*f-a*u,this.y=n+l*u+a*c-r*f,this.z=s+l*f+r*u-o*c,this}project(t){return this.applyMatrix4(t.matrixWorldInverse).applyMatrix4(t.projectionMatrix)}unproject(t){return this.applyMatrix4(t.projectionMatrixInverse).applyMatrix4(t.matrixWorld)}transformDirection(t){let e=this.x,n=this.y,s=this.z,r=t.elements;return this.x=r[0]*e+r[4]*n+r[8]*s,this.y=r[1]*e+r[5]*n+r[9]*s,this.z=r[2]*e+r[6]*n+r[10]*s,this.normalize()}divide(t){return this.x/=t.x,this.y/=t.y,this.z/=t.z,this}divideScalar(t){return this.multiplyScalar(1/t)}min(t){return this.x=Math.min(this.x,t.x),this.y=Math.min(this.y,t.y),this.z=Math.min(this.z,t.z),this}max(t){return this.x=Math.max(this.x,t.x),this.y=Math.max(this.y,t.y),this.z=Math.max(this.z,t.z),this}clamp(t,e){return this.x=Math.max(t.x,Math.min(e.x,this.x)),this.y=Math.max(t.y,Math.min(e.y,this.y)),this.z=Math.max(t.z,Math.min(e.z,this.z)),this}clampScalar(t,e){return this.x=Math.max(t,Math.min(e,this.x)),this.y=Math.max(t,Math.min(e,this.y)),this.z=Math.max(t,Math.min(e,this.z)),this}clampLength(t,e){let n=this.length();return this.divideScalar(n||1).multiplyScalar(Math.max(t,Math.min(e,n)))}floor(){return this.x=Math.floor(this.x),this.y=Math.floor(this.y),this.z=Math.floor(this.z),this}ceil(){return this.x=Math.ceil(this.x),this.y=Math.ceil(this.y),this.z=Math.ceil(this.z),this}round(){return this.x=Math.round(this.x),this.y=Math.round(this.y),this.z=Math.round(this.z),this}roundToZero(){return this.x=Math.trunc(this.x),this.y=Math.trunc(this.y),this.z=Math.trunc(this.z),this}negate(){return this.x=-this.x,this.y=-this.y,this.z=-this.z,this}dot(t){return this.x*t.x+this.y*t.y+this.z*t.z}lengthSq(){return this.x*this.x+this.y*this.y+this.z*this.z}length(){return Math.sqrt(this.x*this.x+this.y*this.y+this.z*this.z)}manhattanLength(){return Math.abs(this.x)+Math.abs(this.y)+Math.abs(this.z)}normalize(){return this.divideScalar(this.length()||1)}setLength(t){return this.normalize().multiplyScalar(t)}lerp(t,e){return this.x+=(t.x-this.x)*e,this.y+=(t.y-this.y)*e,this.z+=(t.z-this.z)*e,this}lerpVectors(t,e,n){return this.x=t.x+(e.x-t.x)*n,this.y=t.y+(e.y-t.y)*n,this.z=t.z+(e.z-t.z)*n,this}cross(t){return this.crossVectors(this,t)}crossVectors(t,e){let n=t.x,s=t.y,r=t.z,o=e.x,a=e.y,l=e.z;return this.x=s*l-r*a,this.y=r*o-n*l,this.z=n*a-s*o,this}projectOnVector(t){let e=t.lengthSq();if(e===0)return this.set(0,0,0);let n=t.dot(this)/e;return this.copy(t).multiplyScalar(n)}projectOnPlane(t){return Rl.copy(this).projectOnVector(t),this.sub(Rl)}reflect(t){return this.sub(Rl.copy(t).multiplyScalar(2*this.dot(t)))}angleTo(t){let e=Math.sqrt(this.lengthSq()*t.lengthSq());if(e===0)return Math.PI/2;let n=this.dot(t)/e;return Math.acos(dn(n,-1,1))}distanceTo(t){return Math.sqrt(this.distanceToSquared(t))}distanceToSquared(t){let e=this.x-t.x,n=this.y-t.y,s=this.z-t.z;return e*e+n*n+s*s}manhattanDistanceTo(t){return Math.abs(this.x-t.x)+Math.abs(this.y-t.y)+Math.abs(this.z-t.z)}setFromSpherical(t){return this.setFromSphericalCoords(t.radius,t.phi,t.theta)}setFromSphericalCoords(t,e,n){let s=Math.sin(e)*t;return this.x=s*Math.sin(n),this.y=Math.cos(e)*t,this.z=s*Math.cos(n),this}setFromCylindrical(t){return this.setFromCylindricalCoords(t.radius,t.theta,t.y)}setFromCylindricalCoords(t,e,n){return this.x=t*Math.sin(e),this.y=n,this.z=t*Math.cos(e),this}setFromMatrixPosition(t){let e=t.elements;return this.x=e[12],this.y=e[13],this.z=e[14],this}setFromMatrixScale(t){let e=this.setFromMatrixColumn(t,0).length(),n=this.setFromMatrixColumn(t,1).length(),s=this.setFromMatrixColumn(t,2).length();return this.x=e,this.y=n,this.z=s,this}setFromMatrixColumn(t,e){return this.fromArray(t.elements,e*4)}setFromMatrix3Column(t,e){return this.fromArray(t.elements,e*3)}setFromEuler(t){return this.x=t._x,this.y=t._y,this.z=t._z,this}setFromColor(t){return this.x=t.r,this.y=t.g,this.z=t.b,this}equals(t){return t.x===this.x&&t.y===this.y&&t.z===this.z}fromArray(t,e=0){return this.x=t[e],this.y=t[e+1],this.z=t[e+2],this}toArray(t=[],e=0){return t[e]=this.x,t[e+1]=this.y,t[e+2]=this.z,t}fromBufferAttribute(t,e){return this.x=t.getX(e),this.y=t.getY(e),this.z=t.getZ(e),this}random(){return this.x=Math.random(),this.y=Math.random(),this.z=Math.random(),this}randomDirection(){let t=Math.random()*Math.PI*2,e=Math.random()*2-1,n=Math.sqrt(1-e*e);return this.x=n*Math.cos(t),this.y=e,this.z=n*Math.sin(t),this}*[Symbol.iterator](){yield this.x,yield this.y,yield this.z}},Rl=new H,sf=new ai,Cs=class{constructor(t=new H(1/0,1/0,1/0),e=new H(-1/0,-1/0,-1/0)){this.isBox3=!0,this.min=t,this.max=e}set(t,e){return this.min.copy(t),this.max.copy(e),this}setFromArray(t){this.makeEmpty();for(let e=0,n=t.length;e<n;e+=3)this.expandByPoint(ti.fromArray(t,e));return this}setFromBufferAttribute(t){this.makeEmpty();for(let e=0,n=t.count;e<n;e++)this.expandByPoint(ti.fromBufferAttribute(t,e));return this}setFromPoints(t){this.makeEmpty();for(let e=0,n=t.length;e<n;e++)this.expandByPoint(t[e]);return this}setFromCenterAndSize(t,e){let n=ti.copy(e).multiplyScalar(.5);return this.min.copy(t).sub(n),this.max.copy(t).add(n),this}setFromObject(t,e=!1){return this.makeEmpty(),this.expandByObject(t,e)}clone(){return new this.constructor().copy(this)}copy(t){return this.min.copy(t.min),this.max.copy(t.max),this}makeEmpty(){return this.min.x=this.min.y=this.min.z=1/0,this.max.x=this.max.y=this.max.z=-1/0,this}isEmpty(){return this.max.x<this.min.x||this.max.y<this.min.y||this.max.z<this.min.z}getCenter(t){return this.isEmpty()?t.set(0,0,0):t.addVectors(this.min,this.max).multiplyScalar(.5)}getSize(t){return this.isEmpty()?t.set(0,0,0):t.subVectors(this.max,this.min)}expandByPoint(t){return this.min.min(t),this.max.max(t),this}expandByVector(t){return this.min.sub(t),this.max.add(t),this}expandByScalar(t){return this.min.addScalar(-t),this.max.addScalar(t),this}expandByObject(t,e=!1){t.updateWorldMatrix(!1,!1);let n=t.geometry;if(n!==void 0){let r=n.getAttribute("position");if(e===!0&&r!==void 0&&t.isInstancedMesh!==!0)for(let o=0,a=r.count;o<a;o++)t.isMesh===!0?t.getVertexPosition(o,ti):ti.fromBufferAttribute(r,o),ti.applyMatrix4(t.matrixWorld),this.expandByPoint(ti);else t.boundingBox!==void 0?(t.boundingBox===null&&t.computeBoundingBox(),Do.copy(t.boundingBox)):(n.boundingBox===null&&n.computeBoundingBox(),Do.copy(n.boundingBox)),Do.applyMatrix4(t.matrixWorld),this.union(Do)}let s=t.children;for(let r=0,o=s.length;r<o;r++)this.expandByObject(s[r],e);return this}containsPoint(t){return t.x>=this.min.x&&t.x<=this.max.x&&t.y>=this.min.y&&t.y<=this.max.y&&t.z>=this.min.z&&t.z<=this.max.z}containsBox(t){return this.min.x<=t.min.x&&t.max.x<=this.max.x&&this.min.y<=t.min.y&&t.max.y<=this.max.y&&this.min.z<=t.min.z&&t.max.z<=this.max.z}getParameter(t,e){return e.set((t.x-this.min.x)/(this.max.x-this.min.x),(t.y-this.min.y)/(this.max.y-this.min.y),(t.z-this.min.z)/(this.max.z-this.min.z))}intersectsBox(t){return t.max.x>=this.min.x&&t.min.x<=this.max.x&&t.max.y>=this.min.y&&t.min.y<=this.max.y&&t.max.z>=this.min.z&&t.min.z<=this.max.z}intersectsSphere(t){return this.clampPoint(t.center,ti),ti.distanceToSquared(t.center)<=t.radius*t.radius}intersectsPlane(t){let e,n;return t.normal.x>0?(e=t.normal.x*this.min.x,n=t.normal.x*this.max.x):(e=t.normal.x*this.max.x,n=t.normal.x*this.min.x),t.normal.y>0?(e+=t.normal.y*this.min.y,n+=t.normal.y*this.max.y):(e+=t.normal.y*this.max.y,n+=t.normal.y*this.min.y),t.normal.z>0?(e+=t.normal.z*this.min.z,n+=t.normal.z*this.max.z):(e+=t.normal.z*this.max.z,n+=t.normal.z*this.min.z),e<=-t.constant&&n>=-t.constant}intersectsTriangle(t){if(this.isEmpty())return!1;this.getCenter(Kr),No.subVectors(this.max,Kr),nr.subVectors(t.a,Kr),ir.subVectors(t.b,Kr),sr.subVectors(t.c,Kr),$i.subVectors(ir,nr),Zi.subVectors(sr,ir),ms.subVectors(nr,sr);let e=[0,-$i.z,$i.y,0,-Zi.z,Zi.y,0,-ms.z,ms.y,$i.z,0,-$i.x,Zi.z,0,-Zi.x,ms.z,0,-ms.x,-$i.y,$i.x,0,-Zi.y,Zi.x,0,-ms.y,ms.x,0];return!Pl(e,nr,ir,sr,No)||(e=[1,0,0,0,1,0,0,0,1],!Pl(e,nr,ir,sr,No))?!1:(Uo.crossVectors($i,Zi),e=[Uo.x,Uo.y,Uo.z],Pl(e,nr,ir,sr,No))}clampPoint(t,e){return e.copy(t).clamp(this.min,this.max)}distanceToPoint(t){return this.clampPoint(t,ti).distanceTo(t)}getBoundingSphere(t){return this.isEmpty()?t.makeEmpty():(this.getCenter(t.center),t.radius=this.getSize(ti).length()*.5),t}intersect(t){return this.min.max(t.min),this.max.min(t.max),this.isEmpty()&&this.makeEmpty(),this}union(t){return this.min.min(t.min),this.max.max(t.max),this}applyMatrix4(t){return this.isEmpty()?this:(Ai[0].set(this.min.x,this.min.y,this.min.z).applyMatrix4(t),Ai[1].set(this.min.x,this.min.y,this.max.z).applyMatrix4(t),Ai[2].set(this.min.x,this.max.y,this.min.z).applyMatrix4(t),Ai[3].set(this.min.x,this.max.y,this.max.z).applyMatrix4(t),Ai[4].set(this.max.x,this.min.y,this.min.z).applyMatrix4(t),Ai[5].set(this.max.x,this.min.y,this.max.z).applyMatrix4(t),Ai[6].set(this.max.x,this.max.y,this.min.z).applyMatrix4(t),Ai[7].set(this.max.x,this.max.y,this.max.z).applyMatrix4(t),this.setFromPoints(Ai),this)}translate(t){return this.min.add(t),this.max.add(t),this}equals(t){return t.min.equals(this.min)&&t.max.equals(this.max)}},Ai=[new H,new H,new H,new H,new H,new H,new H,new H],ti=new H,Do=new Cs,nr=new H,ir=new H,sr=new H,$i=new H,Zi=new H,ms=new H,Kr=new H,No=new H,Uo=new H,gs=new H;function Pl(i,t,e,n,s){for(let r=0,o=i.length-3;r<=o;r+=3){gs.fromArray(i,r);let a=s.x*Math.abs(gs.x)+s.y*Math.abs(gs.y)+s.z*Math.abs(gs.z),l=t.dot(gs),c=e.dot(gs),u=n.dot(gs);if(Math.max(-Math.max(l,c,u),Math.min(l,c,u))>a)return!1}return!0}var Vg=new Cs,jr=new H,Il=new H,Rs=class{constructor(t=new H,e=-1){this.isSphere=!0,this.center=t,this.radius=e}set(t,e){return this.center.copy(t),this.radius=e,this}setFromPoints(t,e){let n=this.center;e!==void 0?n.copy(e):Vg.setFromPoints(t).getCenter(n);let s=0;for(let r=0,o=t.length;r<o;r++)s=Math.max(s,n.distanceToSquared(t[r]));return this.radius=Math.sqrt(s),this}copy(t){return this.center.copy(t.center),this.radius=t.radius,this}isEmpty(){return this.radius<0}makeEmpty(){return this.center.set(0,0,0),this.radius=-1,this}containsPoint(t){return t.distanceToSquared(this.center)<=this.radius*this.radius}distanceToPoint(t){return t.distanceTo(this.center)-this.radius}intersectsSphere(t){let e=this.radius+t.radius;return t.center.distanceToSquared(this.center)<=e*e}intersectsBox(t){return t.intersectsSphere(this)}intersectsPlane(t){return Math.abs(t.distanceToPoint(this.center))<=this.radius}clampPoint(t,e){let n=this.center.distanceToSquared(t);return e.copy(t),n>this.radius*this.radius&&(e.sub(this.center).normalize(),e.multiplyScalar(this.radius).add(this.center)),e}getBoundingBox(t){return this.isEmpty()?(t.makeEmpty(),t):(t.set(this.center,this.center),t.expandByScalar(this.radius),t)}applyMatrix4(t){return this.center.applyMatrix4(t),this.radius=this.radius*t.getMaxScaleOnAxis(),this}translate(t){return this.center.add(t),this}expandByPoint(t){if(this.isEmpty())return this.center.copy(t),this.radius=0,this;jr.subVectors(t,this.center);let e=jr.lengthSq();if(e>this.radius*this.radius){let n=Math.sqrt(e),s=(n-this.radius)*.5;this.center.addScaledVector(jr,s/n),this.radius+=s}return this}union(t){return t.isEmpty()?this:this.isEmpty()?(this.copy(t),this):(this.center.equals(t.center)===!0?this.radius=Math.max(this.radius,t.radius):(Il.subVectors(t.center,this.center).setLength(t.radius),this.expandByPoint(jr.copy(t.center).add(Il)),this.expandByPoint(jr.copy(t.center).sub(Il))),this)}equals(t){return t.center.equals(this.center)&&t.radius===this.radius}clone(){return new this.constructor().copy(this)}},Ci=new H,Ll=new H,Oo=new H,Ji=new H,Dl=new H,Fo=new H,Nl=new H,Ps=class{constructor(t=new H,e=new H(0,0,-1)){this.origin=t,this.direction=e}set(t,e){return this.origin.copy(t),this.direction.copy(e),this}copy(t){return this.origin.copy(t.origin),this.direction.copy(t.direction),this}at(t,e){return e.copy(this.origin).addScaledVector(this.direction,t)}lookAt(t){return this.direction.copy(t).sub(this.origin).normalize(),this}recast(t){return this.origin.copy(this.at(t,Ci)),this}closestPointToPoint(t,e){e.subVectors(t,this.origin);let n=e.dot(this.direction);return n<0?e.copy(this.origin):e.copy(this.origin).addScaledVector(this.direction,n)}distanceToPoint(t){return Math.sqrt(this.distanceSqToPoint(t))}distanceSqToPoint(t){let e=Ci.subVectors(t,this.origin).dot(this.direction);return e<0?this.origin.distanceToSquared(t):(Ci.copy(this.origin).addScaledVector(this.direction,e),Ci.distanceToSquared(t))}distanceSqToSegment(t,e,n,s){Ll.copy(t).add(e).multiplyScalar(.5),Oo.copy(e).sub(t).normalize(),Ji.copy(this.origin).sub(Ll);let r=t.distanceTo(e)*.5,o=-this.direction.dot(Oo),a=Ji.dot(this.direction),l=-Ji.dot(Oo),c=Ji.lengthSq(),u=Math.abs(1-o*o),f,h,d,_;if(u>0)if(f=o*l-a,h=o*a-l,_=r*u,f>=0)if(h>=-_)if(h<=_){let x=1/u;f*=x,h*=x,d=f*(f+o*h+2*a)+h*(o*f+h+2*l)+c}else h=r,f=Math.max(0,-(o*h+a)),d=-f*f+h*(h+2*l)+c;else h=-r,f=Math.max(0,-(o*h+a)),d=-f*f+h*(h+2*l)+c;else h<=-_?(f=Math.max(0,-(-o*r+a)),h=f>0?-r:Math.min(Math.max(-r,-l),r),d=-f*f+h*(h+2*l)+c):h<=_?(f=0,h=Math.min(Math.max(-r,-l),r),d=h*(h+2*l)+c):(f=Math.max(0,-(o*r+a)),h=f>0?r:Math.min(Math.max(-r,-l),r),d=-f*f+h*(h+2*l)+c);else h=o>0?-r:r,f=Math.max(0,-(o*h+a)),d=-f*f+h*(h+2*l)+c;return n&&n.copy(this.origin).addScaledVector(this.direction,f),s&&s.copy(Ll).addScaledVector(Oo,h),d}intersectSphere(t,e){Ci.subVectors(t.center,this.origin);let n=Ci.dot(this.direction),s=Ci.dot(Ci)-n*n,r=t.radius*t.radius;if(s>r)return null;let o=Math.sqrt(r-s),a=n-o,l=n+o;return l<0?null:a<0?this.at(l,e):this.at(a,e)}intersectsSphere(t){return this.distanceSqToPoint(t.center)<=t.radius*t.radius}distanceToPlane(t){let e=t.normal.dot(this.direction);if(e===0)return t.distanceToPoint(this.origin)===0?0:null;let n=-(this.origin.dot(t.normal)+t.constant)/e;return n>=0?n:null}intersectPlane(t,e){let n=this.distanceToPlane(t);return n===null?null:this.at(n,e)}intersectsPlane(t){let e=t.distanceToPoint(this.origin);return e===0||t.normal.dot(this.direction)*e<0}intersectBox(t,e){let n,s,r,o,a,l,c=1/this.direction.x,u=1/this.direction.y,f=1/this.direction.z,h=this.origin;return c>=0?(n=(t.min.x-h.x)*c,s=(t.max.x-h.x)*c):(n=(t.max.x-h.x)*c,s=(t.min.x-h.x)*c),u>=0?(r=(t.min.y-h.y)*u,o=(t.max.y-h.y)*u):(r=(t.max.y-h.y)*u,o=(t.min.y-h.y)*u),n>o||r>s||((r>n||isNaN(n))&&(n=r),(o<s||isNaN(s))&&(s=o),f>=0?(a=(t.min.z-h.z)*f,l=(t.max.z-h.z)*f):(a=(t.max.z-h.z)*f,l=(t.min.z-h.z)*f),n>l||a>s)||((a>n||n!==n)&&(n=a),(l<s||s!==s)&&(s=l),s<0)?null:this.at(n>=0?n:s,e)}intersectsBox(t){return this.intersectBox(t,Ci)!==null}intersectTriangle(t,e,n,s,r){Dl.subVectors(e,t),Fo.subVectors(n,t),Nl.crossVectors(Dl,Fo);let o=this.direction.dot(Nl),a;if(o>0){if(s)return null;a=1}else if(o<0)a=-1,o=-o;else return null;Ji.subVectors(this.origin,t);let l=a*this.direction.dot(Fo.crossVectors(Ji,Fo));if(l<0)return null;let c=a*this.direction.dot(Dl.cross(Ji));if(c<0||l+c>o)return null;let u=-a*Ji.dot(Nl);return u<0?null:this.at(u/o,r)}applyMatrix4(t){return this.origin.applyMatrix4(t),this.direction.transformDirection(t),this}equals(t){return t.origin.equals(this.origin)&&t.direction.equals(this.direction)}clone(){return new this.constructor().copy(this)}},Ve=class i{constructor(t,e,n,s,r,o,a,l,c,u,f,h,d,_,x,m){i.prototype.isMatrix4=!0,this.elements=[1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1],t!==void 0&&this.set(t,e,n,s,r,o,a,l,c,u,f,h,d,_,x,m)}set(t,e,n,s,r,o,a,l,c,u,f,h,d,_,x,m){let p=this.elements;return p[0]=t,p[4]=e,p[8]=n,p[12]=s,p[1]=r,p[5]=o,p[9]=a,p[13]=l,p[2]=c,p[6]=u,p[10]=f,p[14]=h,p[3]=d,p[7]=_,p[11]=x,p[15]=m,this}identity(){return this.set(1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1),this}clone(){return new i().fromArray(this.elements)}copy(t){let e=this.elements,n=t.elements;return e[0]=n[0],e[1]=n[1],e[2]=n[2],e[3]=n[3],e[4]=n[4],e[5]=n[5],e[6]=n[6],e[7]=n[7],e[8]=n[8],e[9]=n[9],e[10]=n[10],e[11]=n[11],e[12]=n[12],e[13]=n[13],e[14]=n[14],e[15]=n[15],this}copyPosition(t){let e=this.elements,n=t.elements;return e[12]=n[12],e[13]=n[13],e[14]=n[14],this}setFromMatrix3(t){let e=t.elements;return this.set(e[0],e[3],e[6],0,e[1],e[4],e[7],0,e[2],e[5],e[8],0,0,0,0,1),this}extractBasis(t,e,n){return t.setFromMatrixColumn(this,0),e.setFromMatrixColumn(this,1),n.setFromMatrixColumn(this,2),this}makeBasis(t,e,n){return this.set(t.x,e.x,n.x,0,t.y,e.y,n.y,0,t.z,e.z,n.z,0,0,0,0,1),this}extractRotation(t){let e=this.elements,n=t.elements,s=1/rr.setFromMatrixColumn(t,0).length(),r=1/rr.setFromMatrixColumn(t,1).length(),o=1/rr.setFromMatrixColumn(t,2).length();return e[0]=n[0]*s,e[1]=n[1]*s,e[2]=n[2]*s,e[3]=0,e[4]=n[4]*r,e[5]=n[5]*r,e[6]=n[6]*r,e[7]=0,e[8]=n[8]*o,e[9]=n[9]*o,e[10]=n[10]*o,e[11]=0,e[12]=0,e[13]=0,e[14]=0,e[15]=1,this}makeRotationFromEuler(t){let e=this.elements,n=t.x,s=t.y,r=t.z,o=Math.cos(n),a=Math.sin(n),l=Math.cos(s),c=Math.sin(s),u=Math.cos(r),f=Math.sin(r);if(t.order==="XYZ"){let h=o*u,d=o*f,_=a*u,x=a*f;e[0]=l*u,e[4]=-l*f,e[8]=c,e[1]=d+_*c,e[5]=h-x*c,e[9]=-a*l,e[2]=x-h*c,e[6]=_+d*c,e[10]=o*l}else if(t.order==="YXZ"){let h=l*u,d=l*f,_=c*u,x=c*f;e[0]=h+x*a,e[4]=_*a-d,e[8]=o*c,e[1]=o*f,e[5]=o*u,e[9]=-a,e[2]=d*a-_,e[6]=x+h*a,e[10]=o*l}else if(t.order==="ZXY"){let h=l*u,d=l*f,_=c*u,x=c*f;e[0]=h-x*a,e[4]=-o*f,e[8]=_+d*a,e[1]=d+_*a,e[5]=o*u,e[9]=x-h*a,e[2]=-o*c,e[6]=a,e[10]=o*l}else if(t.order==="ZYX"){let h=o*u,d=o*f,_=a*u,x=a*f;e[0]=l*u,e[4]=_*c-d,e[8]=h*c+x,e[1]=l*f,e[5]=x*c+h,e[9]=d*c-_,e[2]=-c,e[6]=a*l,e[10]=o*l}else if(t.order==="YZX"){let h=o*l,d=o*c,_=a*l,x=a*c;e[0]=l*u,e[4]=x-h*f,e[8]=_*f+d,e[1]=f,e[5]=o*u,e[9]=-a*u,e[2]=-c*u,e[6]=d*f+_,e[10]=h-x*f}else if(t.order==="XZY"){let h=o*l,d=o*c,_=a*l,x=a*c;e[0]=l*u,e[4]=-f,e[8]=c*u,e[1]=h*f+x,e[5]=o*u,e[9]=d*f-_,e[2]=_*f-d,e[6]=a*u,e[10]=x*f+h}return e[3]=0,e[7]=0,e[11]=0,e[12]=0,e[13]=0,e[14]=0,e[15]=1,this}makeRotationFromQuaternion(t){return this.compose(Hg,t,Gg)}lookAt(t,e,n){let s=this.elements;return Ln.subVectors(t,e),Ln.lengthSq()===0&&(Ln.z=1),Ln.normalize(),Ki.crossVectors(n,Ln),Ki.lengthSq()===0&&(Math.abs(n.z)===1?Ln.x+=1e-4:Ln.z+=1e-4,Ln.normalize(),Ki.crossVectors(n,Ln)),Ki.normalize(),Bo.crossVectors(Ln,Ki),s[0]=Ki.x,s[4]=Bo.x,s[8]=Ln.x,s[1]=Ki.y,s[5]=Bo.y,s[9]=Ln.y,s[2]=Ki.z,s[6]=Bo.z,s[10]=Ln.z,this}multiply(t){return this.multiplyMatrices(this,t)}premultiply(t){return this.multiplyMatrices(t,this)}multiplyMatrices(t,e){let n=t.elements,s=e.elements,r=this.elements,o=n[0],a=n[4],l=n[8],c=n[12],u=n[1],f=n[5],h=n[9],d=n[13],_=n[2],x=n[6],m=n[10],p=n[14],T=n[3],w=n[7],b=n[11],D=n[15],L=s[0],I=s[4],N=s[8],E=s[12],M=s[1],C=s[5],W=s[9],V=s[13],Y=s[2],j=s[6],Z=s[10],et=s[14],K=s[3],ht=s[7],ot=s[11],mt=s[15];return r[0]=o*L+a*M+l*Y+c*K,r[4]=o*I+a*C+l*j+c*ht,r[8]=o*N+a*W+l*Z+c*ot,r[12]=o*E+a*V+l*et+c*mt,r[1]=u*L+f*M+h*Y+d*K,r[5]=u*I+f*C+h*j+d*ht,r[9]=u*N+f*W+h*Z+d*ot,r[13]=u*E+f*V+h*et+d*mt,r[2]=_*L+x*M+m*Y+p*K,r[6]=_*I+x*C+m*j+p*ht,r[10]=_*N+x*W+m*Z+p*ot,r[14]=_*E+x*V+m*et+p*mt,r[3]=T*L+w*M+b*Y+D*K,r[7]=T*I+w*C+b*j+D*ht,r[11]=T*N+w*W+b*Z+D*ot,r[15]=T*E+w*V+b*et+D*mt,this}multiplyScalar(t){let e=this.elements;return e[0]*=t,e[4]*=t,e[8]*=t,e[12]*=t,e[1]*=t,e[5]*=t,e[9]*=t,e[13]*=t,e[2]*=t,e[6]*=t,e[10]*=t,e[14]*=t,e[3]*=t,e[7]*=t,e[11]*=t,e[15]*=t,this}determinant(){let t=this.elements,e=t[0],n=t[4],s=t[8],r=t[12],o=t[1],a=t[5],l=t[9],c=t[13],u=t[2],f=t[6],h=t[10],d=t[14],_=t[3],x=t[7],m=t[11],p=t[15];return _*(+r*l*f-s*c*f-r*a*h+n*c*h+s*a*d-n*l*d)+x*(+e*l*d-e*c*h+r*o*h-s*o*d+s*c*u-r*l*u)+m*(+e*c*f-e*a*d-r*o*f+n*o*d+r*a*u-n*c*u)+p*(-s*a*u-e*l*f+e*a*h+s*o*f-n*o*h+n*l*u)}transpose(){let t=this.elements,e;return e=t[1],t[1]=t[4],t[4]=e,e=t[2],t[2]=t[8],t[8]=e,e=t[6],t[6]=t[9],t[9]=e,e=t[3],t[3]=t[12],t[12]=e,e=t[7],t[7]=t[13],t[13]=e,e=t[11],t[11]=t[14],t[14]=e,this}setPosition(t,e,n){let s=this.elements;return t.isVector3?(s[12]=t.x,s[13]=t.y,s[14]=t.z):(s[12]=t,s[13]=e,s[14]=n),this}invert(){let t=this.elements,e=t[0],n=t[1],s=t[2],r=t[3],o=t[4],a=t[5],l=t[6],c=t[7],u=t[8],f=t[9],h=t[10],d=t[11],_=t[12],x=t[13],m=t[14],p=t[15],T=f*m*c-x*h*c+x*l*d-a*m*d-f*l*p+a*h*p,w=_*h*c-u*m*c-_*l*d+o*m*d+u*l*p-o*h*p,b=u*x*c-_*f*c+_*a*d-o*x*d-u*a*p+o*f*p,D=_*f*l-u*x*l-_*a*h+o*x*h+u*a*m-o*f*m,L=e*T+n*w+s*b+r*D;if(L===0)return this.set(0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0);let I=1/L;return t[0]=T*I,t[1]=(x*h*r-f*m*r-x*s*d+n*m*d+f*s*p-n*h*p)*I,t[2]=(a*m*r-x*l*r+x*s*c-n*m*c-a*s*p+n*l*p)*I,t[3]=(f*l*r-a*h*r-f*s*c+n*h*c+a*s*d-n*l*d)*I,t[4]=w*I,t[5]=(u*m*r-_*h*r+_*s*d-e*m*d-u*s*p+e*h*p)*I,t[6]=(_*l*r-o*m*r-_*s*c+e*m*c+o*s*p-e*l*p)*I,t[7]=(o*h*r-u*l*r+u*s*c-e*h*c-o*s*d+e*l*d)*I,t[8]=b*I,t[9]=(_*f*r-u*x*r-_*n*d+e*x*d+u*n*p-e*f*p)*I,t[10]=(o*x*r-_*a*r+_*n*c-e*x*c-o*n*p+e*a*p)*I,t[11]=(u*a*r-o*f*r-u*n*c+e*f*c+o*n*d-e*a*d)*I,t[12]=D*I,t[13]=(u*x*s-_*f*s+_*n*h-e*x*h-u*n*m+e*f*m)*I,t[14]=(_*a*s-o*x*s-_*n*l+e*x*l+o*n*m-e*a*m)*I,t[15]=(o*f*s-u*a*s+u*n*l-e*f*l-o*n*h+e*a*h)*I,this}scale(t){let e=this.elements,n=t.x,s=t.y,r=t.z;return e[0]*=n,e[4]*=s,e[8]*=r,e[1]*=n,e[5]*=s,e[9]*=r,e[2]*=n,e[6]*=s,e[10]*=r,e[3]*=n,e[7]*=s,e[11]*=r,this}getMaxScaleOnAxis(){let t=this.elements,e=t[0]*t[0]+t[1]*t[1]+t[2]*t[2],n=t[4]*t[4]+t[5]*t[5]+t[6]*t[6],s=t[8]*t[8]+t[9]*t[9]+t[10]*t[10];return Math.sqrt(Math.max(e,n,s))}makeTranslation(t,e,n){return t.isVector3?this.set(1,0,0,t.x,0,1,0,t.y,0,0,1,t.z,0,0,0,1):this.set(1,0,0,t,0,1,0,e,0,0,1,n,0,0,0,1),this}makeRotationX(t){let e=Math.cos(t),n=Math.sin(t);return this.set(1,0,0,0,0,e,-n,0,0,n,e,0,0,0,0,1),this}makeRotationY(t){let e=Math.cos(t),n=Math.sin(t);return this.set(e,0,n,0,0,1,0,0,-n,0,e,0,0,0,0,1),this}makeRotationZ(t){let e=Math.cos(t),n=Math.sin(t);return this.set(e,-n,0,0,n,e,0,0,0,0,1,0,0,0,0,1),this}makeRotationAxis(t,e){let n=Math.cos(e),s=Math.sin(e),r=1-n,o=t.x,a=t.y,l=t.z,c=r*o,u=r*a;return this.set(c*o+n,c*a-s*l,c*l+s*a,0,c*a+s*l,u*a+n,u*l-s*o,0,c*l-s*a,u*l+s*o,r*l*l+n,0,0,0,0,1),this}makeScale(t,e,n){return this.set(t,0,0,0,0,e,0,0,0,0,n,0,0,0,0,1),this}makeShear(t,e,n,s,r,o){return this.set(1,n,r,0,t,1,o,0,e,s,1,0,0,0,0,1),this}compose(t,e,n){let s=this.elements,r=e._x,o=e._y,a=e._z,l=e._w,c=r+r,u=o+o,f=a+a,h=r*c,d=r*u,_=r*f,x=o*u,m=o*f,p=a*f,T=l*c,w=l*u,b=l*f,D=n.x,L=n.y,I=n.z;return s[0]=(1-(x+p))*D,s[1]=(d+b)*D,s[2]=(_-w)*D,s[3]=0,s[4]=(d-b)*L,s[5]=(1-(h+p))*L,s[6]=(m+T)*L,s[7]=0,s[8]=(_+w)*I,s[9]=(m-T)*I,s[10]=(1-(h+x))*I,s[11]=0,s[12]=t.x,s[13]=t.y,s[14]=t.z,s[15]=1,this}decompose(t,e,n){let s=this.elements,r=rr.set(s[0],s[1],s[2]).length(),o=rr.set(s[4],s[5],s[6]).length(),a=rr.set(s[8],s[9],s[10]).length();this.determinant()<0&&(r=-r),t.x=s[12],t.y=s[13],t.z=s[14],ei.copy(this);let c=1/r,u=1/o,f=1/a;return ei.elements[0]*=c,ei.elements[1]*=c,ei.elements[2]*=c,ei.elements[4]*=u,ei.elements[5]*=u,ei.elements[6]*=u,ei.elements[8]*=f,ei.elements[9]*=f,ei.elements[10]*=f,e.setFromRotationMatrix(ei),n.x=r,n.y=o,n.z=a,this}makePerspective(t,e,n,s,r,o,a=Ni){let l=this.elements,c=2*r/(e-t),u=2*r/(n-s),f=(e+t)/(e-t),h=(n+s)/(n-s),d,_;if(a===Ni)d=-(o+r)/(o-r),_=-2*o*r/(o-r);else if(a===ha)d=-o/(o-r),_=-o*r/(o-r);else throw new Error("THREE.Matrix4.makePerspective(): Invalid coordinate system: "+a);return l[0]=c,l[4]=0,l[8]=f,l[12]=0,l[1]=0,l[5]=u,l[9]=h,l[13]=0,l[2]=0,l[6]=0,l[10]=d,l[14]=_,l[3]=0,l[7]=0,l[11]=-1,l[15]=0,this}makeOrthographic(t,e,n,s,r,o,a=Ni){let l=this.elements,c=1/(e-t),u=1/(n-s),f=1/(o-r),h=(e+t)*c,d=(n+s)*u,_,x;if(a===Ni)_=(o+r)*f,x=-2*f;else if(a===ha)_=r*f,x=-1*f;else throw new Error("THREE.Matrix4.makeOrthographic(): Invalid coordinate system: "+a);return l[0]=2*c,l[4]=0,l[8]=0,l[12]=-h,l[1]=0,l[5]=2*u,l[9]=0,l[13]=-d,l[2]=0,l[6]=0,l[10]=x,l[14]=-_,l[3]=0,l[7]=0,l[11]=0,l[15]=1,this}equals(t){let e=this.elements,n=t.elements;for(let s=0;s<16;s++)if(e[s]!==n[s])return!1;return!0}fromArray(t,e=0){for(let n=0;n<16;n++)this.elements[n]=t[n+e];return this}toArray(t=[],e=0){let n=this.elements;return t[e]=n[0],t[e+1]=n[1],t[e+2]=n[2],t[e+3]=n[3],t[e+4]=n[4],t[e+5]=n[5],t[e+6]=n[6],t[e+7]=n[7],t[e+8]=n[8],t[e+9]=n[9],t[e+10]=n[10],t[e+11]=n[11],t[e+12]=n[12],t[e+13]=n[13],t[e+14]=n[14],t[e+15]=n[15],t}},rr=new H,ei=new Ve,Hg=new H(0,0,0),Gg=new H(1,1,1),Ki=new H,Bo=new H,Ln=new H,rf=new Ve,of=new ai,ki=class i{constructor(t=0,e=0,n=0,s=i.DEFAULT_ORDER){this.isEuler=!0,this._x=t,this._y=e,this._z=n,this._order=s}get x(){return this._x}set x(t){this._x=t,this._onChangeCallback()}get y(){return this._y}set y(t){this._y=t,this._onChangeCallback()}get z(){return this._z}set z(t){this._z=t,this._onChangeCallback()}get order(){return this._order}set order(t){this._order=t,this._onChangeCallback()}set(t,e,n,s=this._order){return this._x=t,this._y=e,this._z=n,this._order=s,this._onChangeCallback(),this}clone(){return new this.constructor(this._x,this._y,this._z,this._order)}copy(t){return this._x=t._x,this._y=t._y,this._z=t._z,this._order=t._order,this._onChangeCallback(),this}setFromRotationMatrix(t,e=this._order,n=!0){let s=t.elements,r=s[0],o=s[4],a=s[8],l=s[1],c=s[5],u=s[9],f=s[2],h=s[6],d=s[10];switch(e){case"XYZ":this._y=Math.asin(dn(a,-1,1)),Math.abs(a)<.9999999?(this._x=Math.atan2(-u,d),this._z=Math.atan2(-o,r)):(this._x=Math.atan2(h,c),this._z=0);break;case"YXZ":this._x=Math.asin(-dn(u,-1,1)),Math.abs(u)<.9999999?(this._y=Math.atan2(a,d),this._z=Math.atan2(l,c)):(this._y=Math.atan2(-f,r),this._z=0);break;case"ZXY":this._x=Math.asin(dn(h,-1,1)),Math.abs(h)<.9999999?(this._y=Math.atan2(-f,d),this._z=Math.atan2(-o,c)):(this._y=0,this._z=Math.atan2(l,r));break;case"ZYX":this._y=Math.asin(-dn(f,-1,1)),Math.abs(f)<.9999999?(this._x=Math.atan2(h,d),this._z=Math.atan2(l,r)):(this._x=0,this._z=Math.atan2(-o,c));break;case"YZX":this._z=Math.asin(dn(l,-1,1)),Math.abs(l)<.9999999?(this._x=Math.atan2(-u,c),this._y=Math.atan2(-f,r)):(this._x=0,this._y=Math.atan2(a,d));break;case"XZY":this._z=Math.asin(-dn(o,-1,1)),Math.abs(o)<.9999999?(this._x=Math.atan2(h,c),this._y=Math.atan2(a,r)):(this._x=Math.atan2(-u,d),this._y=0);break;default:console.warn("THREE.Euler: .setFromRotationMatrix() encountered an unknown order: "+e)}return this._order=e,n===!0&&this._onChangeCallback(),this}setFromQuaternion(t,e,n){return rf.makeRotationFromQuaternion(t),this.setFromRotationMatrix(rf,e,n)}setFromVector3(t,e=this._order){return this.set(t.x,t.y,t.z,e)}reorder(t){return of.setFromEuler(this),this.setFromQuaternion(of,t)}equals(t){return t._x===this._x&&t._y===this._y&&t._z===this._z&&t._order===this._order}fromArray(t){return this._x=t[0],this._y=t[1],this._z=t[2],t[3]!==void 0&&(this._order=t[3]),this._onChangeCallback(),this}toArray(t=[],e=0){return t[e]=this._x,t[e+1]=this._y,t[e+2]=this._z,t[e+3]=this._order,t}_onChange(t){return this._onChangeCallback=t,this}_onChangeCallback(){}*[Symbol.iterator](){yield this._x,yield this._y,yield this._z,yield this._order}};ki.DEFAULT_ORDER="XYZ";var pa=class{constructor(){this.mask=1}set(t){this.mask=(1<<t|0)>>>0}enable(t){this.mask|=1<<t|0}enableAll(){this.mask=-1}toggle(t){this.mask^=1<<t|0}disable(t){this.mask&=~(1<<t|0)}disableAll(){this.mask=0}test(t){return(this.mask&t.mask)!==0}isEnabled(t){return(this.mask&(1<<t|0))!==0}},Wg=0,af=new H,or=new ai,Ri=new Ve,ko=new H,Qr=new H,Xg=new H,Yg=new ai,lf=new H(1,0,0),cf=new H(0,1,0),hf=new H(0,0,1),uf={type:"added"},qg={type:"removed"},ar={type:"childadded",child:null},Ul={type:"childremoved",child:null},Fn=class i extends Fi{constructor(){super(),this.isObject3D=!0,Object.defineProperty(this,"id",{value:Wg++}),this.uuid=Cr(),this.name="",this.type="Object3D",this.parent=null,this.children=[],this.up=i.DEFAULT_UP.clone();let t=new H,e=new ki,n=new ai,s=new H(1,1,1);function r(){n.setFromEuler(e,!1)}function o(){e.setFromQuaternion(n,void 0,!1)}e._onChange(r),n._onChange(o),Object.defineProperties(this,{position:{configurable:!0,enumerable:!0,value:t},rotation:{configurable:!0,enumerable:!0,value:e},quaternion:{configurable:!0,enumerable:!0,value:n},scale:{configurable:!0,enumerable:!0,value:s},modelViewMatrix:{value:new Ve},normalMatrix:{value:new te}}),this.matrix=new Ve,this.matrixWorld=new Ve,this.matrixAutoUpdate=i.DEFAULT_MATRIX_AUTO_UPDATE,this.matrixWorldAutoUpdate=i.DEFAULT_MATRIX_WORLD_AUTO_UPDATE,this.matrixWorldNeedsUpdate=!1,this.layers=new pa,this.visible=!0,this.castShadow=!1,this.receiveShadow=!1,this.frustumCulled=!0,this.renderOrder=0,this.animations=[],this.userData={}}onBeforeShadow(){}onAfterShadow(){}onBeforeRender(){}onAfterRender(){}applyMatrix4(t){this.matrixAutoUpdate&&this.updateMatrix(),this.matrix.premultiply(t),this.matrix.decompose(this.position,this.quaternion,this.scale)}applyQuaternion(t){return this.quaternion.premultiply(t),this}setRotationFromAxisAngle(t,e){this.quaternion.setFromAxisAngle(t,e)}setRotationFromEuler(t){this.quaternion.setFromEuler(t,!0)}setRotationFromMatrix(t){this.quaternion.setFromRotationMatrix(t)}setRotationFromQuaternion(t){this.quaternion.copy(t)}rotateOnAxis(t,e){return or.setFromAxisAngle(t,e),this.quaternion.multiply(or),this}rotateOnWorldAxis(t,e){return or.setFromAxisAngle(t,e),this.quaternion.premultiply(or),this}rotateX(t){return this.rotateOnAxis(lf,t)}rotateY(t){return this.rotateOnAxis(cf,t)}rotateZ(t){return this.rotateOnAxis(hf,t)}translateOnAxis(t,e){return af.copy(t).applyQuaternion(this.quaternion),this.position.add(af.multiplyScalar(e)),this}translateX(t){return this.translateOnAxis(lf,t)}translateY(t){return this.translateOnAxis(cf,t)}translateZ(t){return this.translateOnAxis(hf,t)}localToWorld(t){return this.updateWorldMatrix(!0,!1),t.applyMatrix4(this.matrixWorld)}worldToLocal(t){return this.updateWorldMatrix(!0,!1),t.applyMatrix4(Ri.copy(this.matrixWorld).invert())}lookAt(t,e,n){t.isVector3?ko.copy(t):ko.set(t,e,n);let s=this.parent;this.updateWorldMatrix(!0,!1),Qr.setFromMatrixPosition(this.matrixWorld),this.isCamera||this.isLight?Ri.lookAt(Qr,ko,this.up):Ri.lookAt(ko,Qr,this.up),this.quaternion.setFromRotationMatrix(Ri),s&&(Ri.extractRotation(s.matrixWorld),or.setFromRotationMatrix(Ri),this.quaternion.premultiply(or.invert()))}add(t){if(arguments.length>1){for(let e=0;e<arguments.length;e++)this.add(arguments[e]);return this}return t===this?(console.error("THREE.Object3D.add: object can't be added as a child of itself.",t),this):(t&&t.isObject3D?(t.removeFromParent(),t.parent=this,this.children.push(t),t.dispatchEvent(uf),ar.child=t,this.dispatchEvent(ar),ar.child=null):console.error("THREE.Object3D.add: object not an instance of THREE.Object3D.",t),this)}remove(t){if(arguments.length>1){for(let n=0;n<arguments.length;n++)this.remove(arguments[n]);return this}let e=this.children.indexOf(t);return e!==-1&&(t.parent=null,this.children.splice(e,1),t.dispatchEvent(qg),Ul.child=t,this.dispatchEvent(Ul),Ul.child=null),this}removeFromParent(){let t=this.parent;return t!==null&&t.remove(this),this}clear(){return this.remove(...this.children)}attach(t){return this.updateWorldMatrix(!0,!1),Ri.copy(this.matrixWorld).invert(),t.parent!==null&&(t.parent.updateWorldMatrix(!0,!1),Ri.multiply(t.parent.matrixWorld)),t.applyMatrix4(Ri),t.removeFromParent(),t.parent=this,this.children.push(t),t.updateWorldMatrix(!1,!0),t.dispatchEvent(uf),ar.child=t,this.dispatchEvent(ar),ar.child=null,this}getObjectById(t){return this.getObjectByProperty("id",t)}getObjectByName(t){return this.getObjectByProperty("name",t)}getObjectByProperty(t,e){if(this[t]===e)return this;for(let n=0,s=this.children.length;n<s;n++){let o=this.children[n].getObjectByProperty(t,e);if(o!==void 0)return o}}getObjectsByProperty(t,e,n=[]){this[t]===e&&n.push(this);let s=this.children;for(let r=0,o=s.length;r<o;r++)s[r].getObjectsByProperty(t,e,n);return n}getWorldPosition(t){return this.updateWorldMatrix(!0,!1),t.setFromMatrixPosition(this.matrixWorld)}getWorldQuaternion(t){return this.updateWorldMatrix(!0,!1),this.matrixWorld.decompose(Qr,t,Xg),t}getWorldScale(t){return this.updateWorldMatrix(!0,!1),this.matrixWorld.decompose(Qr,Yg,t),t}getWorldDirection(t){this.updateWorldMatrix(!0,!1);let e=this.matrixWorld.elements;return t.set(e[8],e[9],e[10]).normalize()}raycast(){}traverse(t){t(this);let e=this.children;for(let n=0,s=e.length;n<s;n++)e[n].traverse(t)}traverseVisible(t){if(this.visible===!1)return;t(this);let e=this.children;for(let n=0,s=e.length;n<s;n++)e[n].traverseVisible(t)}traverseAncestors(t){let e=this.parent;e!==null&&(t(e),e.traverseAncestors(t))}updateMatrix(){this.matrix.compose(this.position,this.quaternion,this.scale),this.matrixWorldNeedsUpdate=!0}updateMatrixWorld(t){this.matrixAutoUpdate&&this.updateMatrix(),(this.matrixWorldNeedsUpdate||t)&&(this.matrixWorldAutoUpdate===!0&&(this.parent===null?this.matrixWorld.copy(this.matrix):this.matrixWorld.multiplyMatrices(this.parent.matrixWorld,this.matrix)),this.matrixWorldNeedsUpdate=!1,t=!0);let e=this.children;for(let n=0,s=e.length;n<s;n++)e[n].updateMatrixWorld(t)}updateWorldMatrix(t,e){let n=this.parent;if(t===!0&&n!==null&&n.updateWorldMatrix(!0,!1),this.matrixAutoUpdate&&this.updateMatrix(),this.matrixWorldAutoUpdate===!0&&(this.parent===null?this.matrixWorld.copy(this.matrix):this.matrixWorld.multiplyMatrices(this.parent.matrixWorld,this.matrix)),e===!0){let s=this.children;for(let r=0,o=s.length;r<o;r++)s[r].updateWorldMatrix(!1,!0)}}toJSON(t){let e=t===void 0||typeof t=="string",n={};e&&(t={geometries:{},materials:{},textures:{},images:{},shapes:{},skeletons:{},animations:{},nodes:{}},n.metadata={version:4.6,type:"Object",generator:"Object3D.toJSON"});let s={};s.uuid=this.uuid,s.type=this.type,this.name!==""&&(s.name=this.name),this.castShadow===!0&&(s.castShadow=!0),this.receiveShadow===!0&&(s.receiveShadow=!0),this.visible===!1&&(s.visible=!1),this.frustumCulled===!1&&(s.frustumCulled=!1),this.renderOrder!==0&&(s.renderOrder=this.renderOrder),Object.keys(this.userData).length>0&&(s.userData=this.userData),s.layers=this.layers.mask,s.matrix=this.matrix.toArray(),s.up=this.up.toArray(),this.matrixAutoUpdate===!1&&(s.matrixAutoUpdate=!1),this.isInstancedMesh&&(s.type="InstancedMesh",s.count=this.count,s.instanceMatrix=this.instanceMatrix.toJSON(),this.instanceColor!==null&&(s.instanceColor=this.instanceColor.toJSON())),this.isBatchedMesh&&(s.type="BatchedMesh",s.perObjectFrustumCulled=this.perObjectFrustumCulled,s.sortObjects=this.sortObjects,s.drawRanges=this._drawRanges,s.reservedRanges=this._reservedRanges,s.visibility=this._visibility,s.active=this._active,s.bounds=this._bounds.map(a=>({boxInitialized:a.boxInitialized,boxMin:a.box.min.toArray(),boxMax:a.box.max.toArray(),sphereInitialized:a.sphereInitialized,sphereRadius:a.sphere.radius,sphereCenter:a.sphere.center.toArray()})),s.maxInstanceCount=this._maxInstanceCount,s.maxVertexCount=this._maxVertexCount,s.maxIndexCount=this._maxIndexCount,s.geometryInitialized=this._geometryInitialized,s.geometryCount=this._geometryCount,s.matricesTexture=this._matricesTexture.toJSON(t),this._colorsTexture!==null&&(s.colorsTexture=this._colorsTexture.toJSON(t)),this.boundingSphere!==null&&(s.boundingSphere={center:s.boundingSphere.center.toArray(),radius:s.boundingSphere.radius}),this.boundingBox!==null&&(s.boundingBox={min:s.boundingBox.min.toArray(),max:s.boundingBox.max.toArray()}));function r(a,l){return a[l.uuid]===void 0&&(a[l.uuid]=l.toJSON(t)),l.uuid}if(this.isScene)this.background&&(this.background.isColor?s.background=this.background.toJSON():this.background.isTexture&&(s.background=this.background.toJSON(t).uuid)),this.environment&&this.environment.isTexture&&this.environment.isRenderTargetTexture!==!0&&(s.environment=this.environment.toJSON(t).uuid);else if(this.isMesh||this.isLine||this.isPoints){s.geometry=r(t.geometries,this.geometry);let a=this.geometry.parameters;if(a!==void 0&&a.shapes!==void 0){let l=a.shapes;if(Array.isArray(l))for(let c=0,u=l.length;c<u;c++){let f=l[c];r(t.shapes,f)}else r(t.shapes,l)}}if(this.isSkinnedMesh&&(s.bindMode=this.bindMode,s.bindMatrix=this.bindMatrix.toArray(),this.skeleton!==void 0&&(r(t.skeletons,this.skeleton),s.skeleton=this.skeleton.uuid)),this.material!==void 0)if(Array.isArray(this.material)){let a=[];for(let l=0,c=this.material.length;l<c;l++)a.push(r(t.materials,this.material[l]));s.material=a}else s.material=r(t.materials,this.material);if(this.children.length>0){s.children=[];for(let a=0;a<this.children.length;a++)s.children.push(this.children[a].toJSON(t).object)}if(this.animations.length>0){s.animations=[];for(let a=0;a<this.animations.length;a++){let l=this.animations[a];s.animations.push(r(t.animations,l))}}if(e){let a=o(t.geometries),l=o(t.materials),c=o(t.textures),u=o(t.images),f=o(t.shapes),h=o(t.skeletons),d=o(t.animations),_=o(t.nodes);a.length>0&&(n.geometries=a),l.length>0&&(n.materials=l),c.length>0&&(n.textures=c),u.length>0&&(n.images=u),f.length>0&&(n.shapes=f),h.length>0&&(n.skeletons=h),d.length>0&&(n.animations=d),_.length>0&&(n.nodes=_)}return n.object=s,n;function o(a){let l=[];for(let c in a){let u=a[c];delete u.metadata,l.push(u)}return l}}clone(t){return new this.constructor().copy(this,t)}copy(t,e=!0){if(this.name=t.name,this.up.copy(t.up),this.position.copy(t.position),this.rotation.order=t.rotation.order,this.quaternion.copy(t.quaternion),this.scale.copy(t.scale),this.matrix.copy(t.matrix),this.matrixWorld.copy(t.matrixWorld),this.matrixAutoUpdate=t.matrixAutoUpdate,this.matrixWorldAutoUpdate=t.matrixWorldAutoUpdate,this.matrixWorldNeedsUpdate=t.matrixWorldNeedsUpdate,this.layers.mask=t.layers.mask,this.visible=t.visible,this.castShadow=t.castShadow,this.receiveShadow=t.receiveShadow,this.frustumCulled=t.frustumCulled,this.renderOrder=t.renderOrder,this.animations=t.animations.slice(),this.userData=JSON.parse(JSON.stringify(t.userData)),e===!0)for(let n=0;n<t.children.length;n++){let s=t.children[n];this.add(s.clone())}return this}};Fn.DEFAULT_UP=new H(0,1,0);Fn.DEFAULT_MATRIX_AUTO_UPDATE=!0;Fn.DEFAULT_MATRIX_WORLD_AUTO_UPDATE=!0;var ni=new H,Pi=new H,Ol=new H,Ii=new H,lr=new H,cr=new H,ff=new H,Fl=new H,Bl=new H,kl=new H,zl=new De,Vl=new De,Hl=new De,bs=class i{constructor(t=new H,e=new H,n=new H){this.a=t,this.b=e,this.c=n}static getNormal(t,e,n,s){s.subVectors(n,e),ni.subVectors(t,e),s.cross(ni);let r=s.lengthSq();return r>0?s.multiplyScalar(1/Math.sqrt(r)):s.set(0,0,0)}static getBarycoord(t,e,n,s,r){ni.subVectors(s,e),Pi.subVectors(n,e),Ol.subVectors(t,e);let o=ni.dot(ni),a=ni.dot(Pi),l=ni.dot(Ol),c=Pi.dot(Pi),u=Pi.dot(Ol),f=o*c-a*a;if(f===0)return r.set(0,0,0),null;let h=1/f,d=(c*l-a*u)*h,_=(o*u-a*l)*h;return r.set(1-d-_,_,d)}static containsPoint(t,e,n,s){return this.getBarycoord(t,e,n,s,Ii)===null?!1:Ii.x>=0&&Ii.y>=0&&Ii.x+Ii.y<=1}static getInterpolation(t,e,n,s,r,o,a,l){return this.getBarycoord(t,e,n,s,Ii)===null?(l.x=0,l.y=0,"z"in l&&(l.z=0),"w"in l&&(l.w=0),null):(l.setScalar(0),l.addScaledVector(r,Ii.x),l.addScaledVector(o,Ii.y),l.addScaledVector(a,Ii.z),l)}static getInterpolatedAttribute(t,e,n,s,r,o){return zl.setScalar(0),Vl.setScalar(0),Hl.setScalar(0),zl.fromBufferAttribute(t,e),Vl.fromBufferAttribute(t,n),Hl.fromBufferAttribute(t,s),o.setScalar(0),o.addScaledVector(zl,r.x),o.addScaledVector(Vl,r.y),o.addScaledVector(Hl,r.z),o}static isFrontFacing(t,e,n,s){return ni.subVectors(n,e),Pi.subVectors(t,e),ni.cross(Pi).dot(s)<0}set(t,e,n){return this.a.copy(t),this.b.copy(e),this.c.copy(n),this}setFromPointsAndIndices(t,e,n,s){return this.a.copy(t[e]),this.b.copy(t[n]),this.c.copy(t[s]),this}setFromAttributeAndIndices(t,e,n,s){return this.a.fromBufferAttribute(t,e),this.b.fromBufferAttribute(t,n),this.c.fromBufferAttribute(t,s),this}clone(){return new this.constructor().copy(this)}copy(t){return this.a.copy(t.a),this.b.copy(t.b),this.c.copy(t.c),this}getArea(){return ni.subVectors(this.c,this.b),Pi.subVectors(this.a,this.b),ni.cross(Pi).length()*.5}getMidpoint(t){return t.addVectors(this.a,this.b).add(this.c).multiplyScalar(1/3)}getNormal(t){return i.getNormal(this.a,this.b,this.c,t)}getPlane(t){return t.setFromCoplanarPoints(this.a,this.b,this.c)}getBarycoord(t,e){return i.getBarycoord(t,this.a,this.b,this.c,e)}getInterpolation(t,e,n,s,r){return i.getInterpolation(t,this.a,this.b,this.c,e,n,s,r)}containsPoint(t){return i.containsPoint(t,this.a,this.b,this.c)}isFrontFacing(t){return i.isFrontFacing(this.a,this.b,this.c,t)}intersectsBox(t){return t.intersectsTriangle(this)}closestPointToPoint(t,e){let n=this.a,s=this.b,r=this.c,o,a;lr.subVectors(s,n),cr.subVectors(r,n),Fl.subVectors(t,n);let l=lr.dot(Fl),c=cr.dot(Fl);if(l<=0&&c<=0)return e.copy(n);Bl.subVectors(t,s);let u=lr.dot(Bl),f=cr.dot(Bl);if(u>=0&&f<=u)return e.copy(s);let h=l*f-u*c;if(h<=0&&l>=0&&u<=0)return o=l/(l-u),e.copy(n).addScaledVector(lr,o);kl.subVectors(t,r);let d=lr.dot(kl),_=cr.dot(kl);if(_>=0&&d<=_)return e.copy(r);let x=d*c-l*_;if(x<=0&&c>=0&&_<=0)return a=c/(c-_),e.copy(n).addScaledVector(cr,a);let m=u*_-d*f;if(m<=0&&f-u>=0&&d-_>=0)return ff.subVectors(r,s),a=(f-u)/(f-u+(d-_)),e.copy(s).addScaledVector(ff,a);let p=1/(m+x+h);return o=x*p,a=h*p,e.copy(n).addScaledVector(lr,o).addScaledVector(cr,a)}equals(t){return t.a.equals(this.a)&&t.b.equals(this.b)&&t.c.equals(this.c)}},hd={aliceblue:15792383,antiquewhite:16444375,aqua:65535,aquamarine:8388564,azure:15794175,beige:16119260,bisque:16770244,black:0,blanchedalmond:16772045,blue:255,blueviolet:9055202,brown:10824234,burlywood:14596231,cadetblue:6266528,chartreuse:8388352,chocolate:13789470,coral:16744272,cornflowerblue:6591981,cornsilk:16775388,crimson:14423100,cyan:65535,darkblue:139,darkcyan:35723,darkgoldenrod:12092939,darkgray:11119017,darkgreen:25600,darkgrey:11119017,darkkhaki:12433259,darkmagenta:9109643,darkolivegreen:5597999,darkorange:16747520,darkorchid:10040012,darkred:9109504,darksalmon:15308410,darkseagreen:9419919,darkslateblue:4734347,darkslategray:3100495,darkslategrey:3100495,darkturquoise:52945,darkviolet:9699539,deeppink:16716947,deepskyblue:49151,dimgray:6908265,dimgrey:6908265,dodgerblue:2003199,firebrick:11674146,floralwhite:16775920,forestgreen:2263842,fuchsia:16711935,gainsboro:14474460,ghostwhite:16316671,gold:16766720,goldenrod:14329120,gray:8421504,green:32768,greenyellow:11403055,grey:8421504,honeydew:15794160,hotpink:16738740,indianred:13458524,indigo:4915330,ivory:16777200,khaki:15787660,lavender:15132410,lavenderblush:16773365,lawngreen:8190976,lemonchiffon:16775885,lightblue:11393254,lightcoral:15761536,lightcyan:14745599,lightgoldenrodyellow:16448210,lightgray:13882323,lightgreen:9498256,lightgrey:13882323,lightpink:16758465,lightsalmon:16752762,lightseagreen:2142890,lightskyblue:8900346,lightslategray:7833753,lightslategrey:7833753,lightsteelblue:11584734,lightyellow:16777184,lime:65280,limegreen:3329330,linen:16445670,magenta:16711935,maroon:8388608,mediumaquamarine:6737322,mediumblue:205,mediumorchid:12211667,mediumpurple:9662683,mediumseagreen:3978097,mediumslateblue:8087790,mediumspringgreen:64154,mediumturquoise:4772300,mediumvioletred:13047173,midnightblue:1644912,mintcream:16121850,mistyrose:16770273,moccasin:16770229,navajowhite:16768685,navy:128,oldlace:16643558,olive:8421376,olivedrab:7048739,orange:16753920,orangered:16729344,orchid:14315734,palegoldenrod:15657130,palegreen:10025880,paleturquoise:11529966,palevioletred:14381203,papayawhip:16773077,peachpuff:16767673,peru:13468991,pink:16761035,plum:14524637,powderblue:11591910,purple:8388736,rebeccapurple:6697881,red:16711680,rosybrown:12357519,royalblue:4286945,saddlebrown:9127187,salmon:16416882,sandybrown:16032864,seagreen:3050327,seashell:16774638,sienna:10506797,silver:12632256,skyblue:8900331,slateblue:6970061,slategray:7372944,slategrey:7372944,snow:16775930,springgreen:65407,steelblue:4620980,tan:13808780,teal:32896,thistle:14204888,tomato:16737095,turquoise:4251856,violet:15631086,wheat:16113331,white:16777215,whitesmoke:16119285,yellow:16776960,yellowgreen:10145074},ji={h:0,s:0,l:0},zo={h:0,s:0,l:0};function Gl(i,t,e){return e<0&&(e+=1),e>1&&(e-=1),e<1/6?i+(t-i)*6*e:e<1/2?t:e<2/3?i+(t-i)*6*(2/3-e):i}var pe=class{constructor(t,e,n){return this.isColor=!0,this.r=1,this.g=1,this.b=1,this.set(t,e,n)}set(t,e,n){if(e===void 0&&n===void 0){let s=t;s&&s.isColor?this.copy(s):typeof s=="number"?this.setHex(s):typeof s=="string"&&this.setStyle(s)}else this.setRGB(t,e,n);return this}setScalar(t){return this.r=t,this.g=t,this.b=t,this}setHex(t,e=Yn){return t=Math.floor(t),this.r=(t>>16&255)/255,this.g=(t>>8&255)/255,this.b=(t&255)/255,de.toWorkingColorSpace(this,e),this}setRGB(t,e,n,s=de.workingColorSpace){return this.r=t,this.g=e,this.b=n,de.toWorkingColorSpace(this,s),this}setHSL(t,e,n,s=de.workingColorSpace){if(t=bh(t,1),e=dn(e,0,1),n=dn(n,0,1),e===0)this.r=this.g=this.b=n;else{let r=n<=.5?n*(1+e):n+e-n*e,o=2*n-r;this.r=Gl(o,r,t+1/3),this.g=Gl(o,r,t),this.b=Gl(o,r,t-1/3)}return de.toWorkingColorSpace(this,s),this}setStyle(t,e=Yn){function n(r){r!==void 0&&parseFloat(r)<1&&console.warn("THREE.Color: Alpha component of "+t+" will be ignored.")}let s;if(s=/^(\w+)\(([^\)]*)\)/.exec(t)){let r,o=s[1],a=s[2];switch(o){case"rgb":case"rgba":if(r=/^\s*(\d+)\s*,\s*(\d+)\s*,\s*(\d+)\s*(?:,\s*(\d*\.?\d+)\s*)?$/.exec(a))return n(r[4]),this.setRGB(Math.min(255,parseInt(r[1],10))/255,Math.min(255,parseInt(r[2],10))/255,Math.min(255,parseInt(r[3],10))/255,e);if(r=/^\s*(\d+)\%\s*,\s*(\d+)\%\s*,\s*(\d+)\%\s*(?:,\s*(\d*\.?\d+)\s*)?$/.exec(a))return n(r[4]),this.setRGB(Math.min(100,parseInt(r[1],10))/100,Math.min(100,parseInt(r[2],10))/100,Math.min(100,parseInt(r[3],10))/100,e);break;case"hsl":case"hsla":if(r=/^\s*(\d*\.?\d+)\s*,\s*(\d*\.?\d+)\%\s*,\s*(\d*\.?\d+)\%\s*(?:,\s*(\d*\.?\d+)\s*)?$/.exec(a))return n(r[4]),this.setHSL(parseFloat(r[1])/360,parseFloat(r[2])/100,parseFloat(r[3])/100,e);break;default:console.warn("THREE.Color: Unknown color model "+t)}}else if(s=/^\#([A-Fa-f\d]+)$/.exec(t)){let r=s[1],o=r.length;if(o===3)return this.setRGB(parseInt(r.charAt(0),16)/15,parseInt(r.charAt(1),16)/15,parseInt(r.charAt(2),16)/15,e);if(o===6)return this.setHex(parseInt(r,16),e);console.warn("THREE.Color: Invalid hex color "+t)}else if(t&&t.length>0)return this.setColorName(t,e);return this}setColorName(t,e=Yn){let n=hd[t.toLowerCase()];return n!==void 0?this.setHex(n,e):console.warn("THREE.Color: Unknown color "+t),this}clone(){return new this.constructor(this.r,this.g,this.b)}copy(t){return this.r=t.r,this.g=t.g,this.b=t.b,this}copySRGBToLinear(t){return this.r=Ui(t.r),this.g=Ui(t.g),this.b=Ui(t.b),this}copyLinearToSRGB(t){return this.r=vr(t.r),this.g=vr(t.g),this.b=vr(t.b),this}convertSRGBToLinear(){return this.copySRGBToLinear(this),this}convertLinearToSRGB(){return this.copyLinearToSRGB(this),this}getHex(t=Yn){return de.fromWorkingColorSpace(fn.copy(this),t),Math.round(dn(fn.r*255,0,255))*65536+Math.round(dn(fn.g*255,0,255))*256+Math.round(dn(fn.b*255,0,255))}getHexString(t=Yn){return("000000"+this.getHex(t).toString(16)).slice(-6)}getHSL(t,e=de.workingColorSpace){de.fromWorkingColorSpace(fn.copy(this),e);let n=fn.r,s=fn.g,r=fn.b,o=Math.max(n,s,r),a=Math.min(n,s,r),l,c,u=(a+o)/2;if(a===o)l=0,c=0;else{let f=o-a;switch(c=u<=.5?f/(o+a):f/(2-o-a),o){case n:l=(s-r)/f+(s<r?6:0);break;case s:l=(r-n)/f+2;break;case r:l=(n-s)/f+4;break}l/=6}return t.h=l,t.s=c,t.l=u,t}getRGB(t,e=de.workingColorSpace){return de.fromWorkingColorSpace(fn.copy(this),e),t.r=fn.r,t.g=fn.g,t.b=fn.b,t}getStyle(t=Yn){de.fromWorkingColorSpace(fn.copy(this),t);let e=fn.r,n=fn.g,s=fn.b;return t!==Yn?`color(${t} ${e.toFixed(3)} ${n.toFixed(3)} ${s.toFixed(3)})`:`rgb(${Math.round(e*255)},${Math.round(n*255)},${Math.round(s*255)})`}offsetHSL(t,e,n){return this.getHSL(ji),this.setHSL(ji.h+t,ji.s+e,ji.l+n)}add(t){return this.r+=t.r,this.g+=t.g,this.b+=t.b,this}addColors(t,e){return this.r=t.r+e.r,this.g=t.g+e.g,this.b=t.b+e.b,this}addScalar(t){return this.r+=t,this.g+=t,this.b+=t,this}sub(t){return this.r=Math.max(0,this.r-t.r),this.g=Math.max(0,this.g-t.g),this.b=Math.max(0,this.b-t.b),this}multiply(t){return this.r*=t.r,this.g*=t.g,this.b*=t.b,this}multiplyScalar(t){return this.r*=t,this.g*=t,this.b*=t,this}lerp(t,e){return this.r+=(t.r-this.r)*e,this.g+=(t.g-this.g)*e,this.b+=(t.b-this.b)*e,this}lerpColors(t,e,n){return this.r=t.r+(e.r-t.r)*n,this.g=t.g+(e.g-t.g)*n,this.b=t.b+(e.b-t.b)*n,this}lerpHSL(t,e){this.getHSL(ji),t.getHSL(zo);let n=ro(ji.h,zo.h,e),s=ro(ji.s,zo.s,e),r=ro(ji.l,zo.l,e);return this.setHSL(n,s,r),this}setFromVector3(t){return this.r=t.x,this.g=t.y,this.b=t.z,this}applyMatrix3(t){let e=this.r,n=this.g,s=this.b,r=t.elements;return this.r=r[0]*e+r[3]*n+r[6]*s,this.g=r[1]*e+r[4]*n+r[7]*s,this.b=r[2]*e+r[5]*n+r[8]*s,this}equals(t){return t.r===this.r&&t.g===this.g&&t.b===this.b}fromArray(t,e=0){return this.r=t[e],this.g=t[e+1],this.b=t[e+2],this}toArray(t=[],e=0){return t[e]=this.r,t[e+1]=this.g,t[e+2]=this.b,t}fromBufferAttribute(t,e){return this.r=t.getX(e),this.g=t.getY(e),this.b=t.getZ(e),this}toJSON(){return this.getHex()}*[Symbol.iterator](){yield this.r,yield this.g,yield this.b}},fn=new pe;pe.NAMES=hd;var $g=0,ss=class extends Fi{static get type(){return"Material"}get type(){return this.constructor.type}set type(t){}constructor(){super(),this.isMaterial=!0,Object.defineProperty(this,"id",{value:$g++}),this.uuid=Cr(),this.name="",this.blending=_r,this.side=is,this.vertexColors=!1,this.opacity=1,this.transparent=!1,this.alphaHash=!1,this.blendSrc=tc,this.blendDst=ec,this.blendEquation=Ss,this.blendSrcAlpha=null,this.blendDstAlpha=null,this.blendEquationAlpha=null,this.blendColor=new pe(0,0,0),this.blendAlpha=0,this.depthFunc=Mr,this.depthTest=!0,this.depthWrite=!0,this.stencilWriteMask=255,this.stencilFunc=qu,this.stencilRef=0,this.stencilFuncMask=255,this.stencilFail=tr,this.stencilZFail=tr,this.stencilZPass=tr,this.stencilWrite=!1,this.clippingPlanes=null,this.clipIntersection=!1,this.clipShadows=!1,this.shadowSide=null,this.colorWrite=!0,this.precision=null,this.polygonOffset=!1,this.polygonOffsetFactor=0,this.polygonOffsetUnits=0,this.dithering=!1,this.alphaToCoverage=!1,this.premultipliedAlpha=!1,this.forceSinglePass=!1,this.visible=!0,this.toneMapped=!0,this.userData={},this.version=0,this._alphaTest=0}get alphaTest(){return this._alphaTest}set alphaTest(t){this._alphaTest>0!=t>0&&this.version++,this._alphaTest=t}onBeforeRender(){}onBeforeCompile(){}customProgramCacheKey(){return this.onBeforeCompile.toString()}setValues(t){if(t!==void 0)for(let e in t){let n=t[e];if(n===void 0){console.warn(`THREE.Material: parameter '${e}' has value of undefined.`);continue}let s=this[e];if(s===void 0){console.warn(`THREE.Material: '${e}' is not a property of THREE.${this.type}.`);continue}s&&s.isColor?s.set(n):s&&s.isVector3&&n&&n.isVector3?s.copy(n):this[e]=n}}toJSON(t){let e=t===void 0||typeof t=="string";e&&(t={textures:{},images:{}});let n={metadata:{version:4.6,type:"Material",generator:"Material.toJSON"}};n.uuid=this.uuid,n.type=this.type,this.name!==""&&(n.name=this.name),this.color&&this.color.isColor&&(n.color=this.color.getHex()),this.roughness!==void 0&&(n.roughness=this.roughness),this.metalness!==void 0&&(n.metalness=this.metalness),this.sheen!==void 0&&(n.sheen=this.sheen),this.sheenColor&&this.sheenColor.isColor&&(n.sheenColor=this.sheenColor.getHex()),this.sheenRoughness!==void 0&&(n.sheenRoughness=this.sheenRoughness),this.emissive&&this.emissive.isColor&&(n.emissive=this.emissive.getHex()),this.emissiveIntensity!==void 0&&this.emissiveIntensity!==1&&(n.emissiveIntensity=this.emissiveIntensity),this.specular&&this.specular.isColor&&(n.specular=this.specular.getHex()),this.specularIntensity!==void 0&&(n.specularIntensity=this.specularIntensity),this.specularColor&&this.specularColor.isColor&&(n.specularColor=this.specularColor.getHex()),this.shininess!==void 0&&(n.shininess=this.shininess),this.clearcoat!==void 0&&(n.clearcoat=this.clearcoat),this.clearcoatRoughness!==void 0&&(n.clearcoatRoughness=this.clearcoatRoughness),this.clearcoatMap&&this.clearcoatMap.isTexture&&(n.clearcoatMap=this.clearcoatMap.toJSON(t).uuid),this.clearcoatRoughnessMap&&this.clearcoatRoughnessMap.isTexture&&(n.clearcoatRoughnessMap=this.clearcoatRoughnessMap.toJSON(t).uuid),this.clearcoatNormalMap&&this.clearcoatNormalMap.isTexture&&(n.clearcoatNormalMap=this.clearcoatNormalMap.toJSON(t).uuid,n.clearcoatNormalScale=this.clearcoatNormalScale.toArray()),this.dispersion!==void 0&&(n.dispersion=this.dispersion),this.iridescence!==void 0&&(n.iridescence=this.iridescence),this.iridescenceIOR!==void 0&&(n.iridescenceIOR=this.iridescenceIOR),this.iridescenceThicknessRange!==void 0&&(n.iridescenceThicknessRange=this.iridescenceThicknessRange),this.iridescenceMap&&this.iridescenceMap.isTexture&&(n.iridescenceMap=this.iridescenceMap.toJSON(t).uuid),this.iridescenceThicknessMap&&this.iridescenceThicknessMap.isTexture&&(n.iridescenceThicknessMap=this.iridescenceThicknessMap.toJSON(t).uuid),this.anisotropy!==void 0&&(n.anisotropy=this.anisotropy),this.anisotropyRotation!==void 0&&(n.anisotropyRotation=this.anisotropyRotation),this.anisotropyMap&&this.anisotropyMap.isTexture&&(n.anisotropyMap=this.anisotropyMap.toJSON(t).uuid),this.map&&this.map.isTexture&&(n.map=this.map.toJSON(t).uuid),this.matcap&&this.matcap.isTexture&&(n.matcap=this.matcap.toJSON(t).uuid),this.alphaMap&&this.alphaMap.isTexture&&(n.alphaMap=this.alphaMap.toJSON(t).uuid),this.lightMap&&this.lightMap.isTexture&&(n.lightMap=this.lightMap.toJSON(t).uuid,n.lightMapIntensity=this.lightMapIntensity),this.aoMap&&this.aoMap.isTexture&&(n.aoMap=this.aoMap.toJSON(t).uuid,n.aoMapIntensity=this.aoMapIntensity),this.bumpMap&&this.bumpMap.isTexture&&(n.bumpMap=this.bumpMap.toJSON(t).uuid,n.bumpScale=this.bumpScale),this.normalMap&&this.normalMap.isTexture&&(n.normalMap=this.normalMap.toJSON(t).uuid,n.normalMapType=this.normalMapType,n.normalScale=this.normalScale.toArray()),this.displacementMap&&this.displacementMap.isTexture&&(n.displacementMap=this.displacementMap.toJSON(t).uuid,n.displacementScale=this.displacementScale,n.displacementBias=this.displacementBias),this.roughnessMap&&this.roughnessMap.isTexture&&(n.roughnessMap=this.roughnessMap.toJSON(t).uuid),this.metalnessMap&&this.metalnessMap.isTexture&&(n.metalnessMap=this.metalnessMap.toJSON(t).uuid),this.emissiveMap&&this.emissiveMap.isTexture&&(n.emissiveMap=this.emissiveMap.toJSON(t).uuid),this.specularMap&&this.specularMap.isTexture&&(n.specularMap=this.specularMap.toJSON(t).uuid),this.specularIntensityMap&&this.specularIntensityMap.isTexture&&(n.specularIntensityMap=this.specularIntensityMap.toJSON(t).uuid),this.specularColorMap&&this.specularColorMap.isTexture&&(n.specularColorMap=this.specularColorMap.toJSON(t).uuid),this.envMap&&this.envMap.isTexture&&(n.envMap=this.envMap.toJSON(t).uuid,this.combine!==void 0&&(n.combine=this.combine)),this.envMapRotation!==void 0&&(n.envMapRotation=this.envMapRotation.toArray()),this.envMapIntensity!==void 0&&(n.envMapIntensity=this.envMapIntensity),this.reflectivity!==void 0&&(n.reflectivity=this.reflectivity),this.refractionRatio!==void 0&&(n.refractionRatio=this.refractionRatio),this.gradientMap&&this.gradientMap.isTexture&&(n.gradientMap=this.gradientMap.toJSON(t).uuid),this.transmission!==void 0&&(n.transmission=this.transmission),this.transmissionMap&&this.transmissionMap.isTexture&&(n.transmissionMap=this.transmissionMap.toJSON(t).uuid),this.thickness!==void 0&&(n.thickness=this.thickness),this.thicknessMap&&this.thicknessMap.isTexture&&(n.thicknessMap=this.thicknessMap.toJSON(t).uuid),this.attenuationDistance!==void 0&&this.attenuationDistance!==1/0&&(n.attenuationDistance=this.attenuationDistance),this.attenuationColor!==void 0&&(n.attenuationColor=this.attenuationColor.getHex()),this.size!==void 0&&(n.size=this.size),this.shadowSide!==null&&(n.shadowSide=this.shadowSide),this.sizeAttenuation!==void 0&&(n.sizeAttenuation=this.sizeAttenuation),this.blending!==_r&&(n.blending=this.blending),this.side!==is&&(n.side=this.side),this.vertexColors===!0&&(n.vertexColors=!0),this.opacity<1&&(n.opacity=this.opacity),this.transparent===!0&&(n.transparent=!0),this.blendSrc!==tc&&(n.blendSrc=this.blendSrc),this.blendDst!==ec&&(n.blendDst=this.blendDst),this.blendEquation!==Ss&&(n.blendEquation=this.blendEquation),this.blendSrcAlpha!==null&&(n.blendSrcAlpha=this.blendSrcAlpha),this.blendDstAlpha!==null&&(n.blendDstAlpha=this.blendDstAlpha),this.blendEquationAlpha!==null&&(n.blendEquationAlpha=this.blendEquationAlpha),this.blendColor&&this.blendColor.isColor&&(n.blendColor=this.blendColor.getHex()),this.blendAlpha!==0&&(n.blendAlpha=this.blendAlpha),this.depthFunc!==Mr&&(n.depthFunc=this.depthFunc),this.depthTest===!1&&(n.depthTest=this.depthTest),this.depthWrite===!1&&(n.depthWrite=this.depthWrite),this.colorWrite===!1&&(n.colorWrite=this.colorWrite),this.stencilWriteMask!==255&&(n.stencilWriteMask=this.stencilWriteMask),this.stencilFunc!==qu&&(n.stencilFunc=this.stencilFunc),this.stencilRef!==0&&(n.stencilRef=this.stencilRef),this.stencilFuncMask!==255&&(n.stencilFuncMask=this.stencilFuncMask),this.stencilFail!==tr&&(n.stencilFail=this.stencilFail),this.stencilZFail!==tr&&(n.stencilZFail=this.stencilZFail),this.stencilZPass!==tr&&(n.stencilZPass=this.stencilZPass),this.stencilWrite===!0&&(n.stencilWrite=this.stencilWrite),this.rotation!==void 0&&this.rotation!==0&&(n.rotation=this.rotation),this.polygonOffset===!0&&(n.polygonOffset=!0),this.polygonOffsetFactor!==0&&(n.polygonOffsetFactor=this.polygonOffsetFactor),this.polygonOffsetUnits!==0&&(n.polygonOffsetUnits=this.polygonOffsetUnits),this.linewidth!==void 0&&this.linewidth!==1&&(n.linewidth=this.linewidth),this.dashSize!==void 0&&(n.dashSize=this.dashSize),this.gapSize!==void 0&&(n.gapSize=this.gapSize),this.scale!==void 0&&(n.scale=this.scale),this.dithering===!0&&(n.dithering=!0),this.alphaTest>0&&(n.alphaTest=this.alphaTest),this.alphaHash===!0&&(n.alphaHash=!0),this.alphaToCoverage===!0&&(n.alphaToCoverage=!0),this.premultipliedAlpha===!0&&(n.premultipliedAlpha=!0),this.forceSinglePass===!0&&(n.forceSinglePass=!0),this.wireframe===!0&&(n.wireframe=!0),this.wireframeLinewidth>1&&(n.wireframeLinewidth=this.wireframeLinewidth),this.wireframeLinecap!=="round"&&(n.wireframeLinecap=this.wireframeLinecap),this.wireframeLinejoin!=="round"&&(n.wireframeLinejoin=this.wireframeLinejoin),this.flatShading===!0&&(n.flatShading=!0),this.visible===!1&&(n.visible=!1),this.toneMapped===!1&&(n.toneMapped=!1),this.fog===!1&&(n.fog=!1),Object.keys(this.userData).length>0&&(n.userData=this.userData);function s(r){let o=[];for(let a in r){let l=r[a];delete l.metadata,o.push(l)}return o}if(e){let r=s(t.textures),o=s(t.images);r.length>0&&(n.textures=r),o.length>0&&(n.images=o)}return n}clone(){return new this.constructor().copy(this)}copy(t){this.name=t.name,this.blending=t.blending,this.side=t.side,this.vertexColors=t.vertexColors,this.opacity=t.opacity,this.transparent=t.transparent,this.blendSrc=t.blendSrc,this.blendDst=t.blendDst,this.blendEquation=t.blendEquation,this.blendSrcAlpha=t.blendSrcAlpha,this.blendDstAlpha=t.blendDstAlpha,this.blendEquationAlpha=t.blendEquationAlpha,this.blendColor.copy(t.blendColor),this.blendAlpha=t.blendAlpha,this.depthFunc=t.depthFunc,this.depthTest=t.depthTest,this.depthWrite=t.depthWrite,this.stencilWriteMask=t.stencilWriteMask,this.stencilFunc=t.stencilFunc,this.stencilRef=t.stencilRef,this.stencilFuncMask=t.stencilFuncMask,this.stencilFail=t.stencilFail,this.stencilZFail=t.stencilZFail,this.stencilZPass=t.stencilZPass,this.stencilWrite=t.stencilWrite;let e=t.clippingPlanes,n=null;if(e!==null){let s=e.length;n=new Array(s);for(let r=0;r!==s;++r)n[r]=e[r].clone()}return this.clippingPlanes=n,this.clipIntersection=t.clipIntersection,this.clipShadows=t.clipShadows,this.shadowSide=t.shadowSide,this.colorWrite=t.colorWrite,this.precision=t.precision,this.polygonOffset=t.polygonOffset,this.polygonOffsetFactor=t.polygonOffsetFactor,this.polygonOffsetUnits=t.polygonOffsetUnits,this.dithering=t.dithering,this.alphaTest=t.alphaTest,this.alphaHash=t.alphaHash,this.alphaToCoverage=t.alphaToCoverage,this.premultipliedAlpha=t.premultipliedAlpha,this.forceSinglePass=t.forceSinglePass,this.visible=t.visible,this.toneMapped=t.toneMapped,this.userData=JSON.parse(JSON.stringify(t.userData)),this}dispose(){this.dispatchEvent({type:"dispose"})}set needsUpdate(t){t===!0&&this.version++}onBuild(){console.warn("Material: onBuild() has been removed.")}},ma=class extends ss{static get type(){return"MeshBasicMaterial"}constructor(t){super(),this.isMeshBasicMaterial=!0,this.color=new pe(16777215),this.map=null,this.lightMap=null,this.lightMapIntensity=1,this.aoMap=null,this.aoMapIntensity=1,this.specularMap=null,this.alphaMap=null,this.envMap=null,this.envMapRotation=new ki,this.combine=Zf,this.reflectivity=1,this.refractionRatio=.98,this.wireframe=!1,this.wireframeLinewidth=1,this.wireframeLinecap="round",this.wireframeLinejoin="round",this.fog=!0,this.setValues(t)}copy(t){return super.copy(t),this.color.copy(t.color),this.map=t.map,this.lightMap=t.lightMap,this.lightMapIntensity=t.lightMapIntensity,this.aoMap=t.aoMap,this.aoMapIntensity=t.aoMapIntensity,this.specularMap=t.specularMap,this.alphaMap=t.alphaMap,this.envMap=t.envMap,this.envMapRotation.copy(t.envMapRotation),this.combine=t.combine,this.reflectivity=t.reflectivity,this.refractionRatio=t.refractionRatio,this.wireframe=t.wireframe,this.wireframeLinewidth=t.wireframeLinewidth,this.wireframeLinecap=t.wireframeLinecap,this.wireframeLinejoin=t.wireframeLinejoin,this.fog=t.fog,this}};var Xe=new H,Vo=new ie,Be=class{constructor(t,e,n=!1){if(Array.isArray(t))throw new TypeError("THREE.BufferAttribute: array should be a Typed Array.");this.isBufferAttribute=!0,this.name="",this.array=t,this.itemSize=e,this.count=t!==void 0?t.length/e:0,this.normalized=n,this.usage=$u,this.updateRanges=[],this.gpuType=Di,this.version=0}onUploadCallback(){}set needsUpdate(t){t===!0&&this.version++}setUsage(t){return this.usage=t,this}addUpdateRange(t,e){this.updateRanges.push({start:t,count:e})}clearUpdateRanges(){this.updateRanges.length=0}copy(t){return this.name=t.name,this.array=new t.array.constructor(t.array),this.itemSize=t.itemSize,this.count=t.count,this.normalized=t.normalized,this.usage=t.usage,this.gpuType=t.gpuType,this}copyAt(t,e,n){t*=this.itemSize,n*=e.itemSize;for(let s=0,r=this.itemSize;s<r;s++)this.array[t+s]=e.array[n+s];return this}copyArray(t){return this.array.set(t),this}applyMatrix3(t){if(this.itemSize===2)for(let e=0,n=this.count;e<n;e++)Vo.fromBufferAttribute(this,e),Vo.applyMatrix3(t),this.setXY(e,Vo.x,Vo.y);else if(this.itemSize===3)for(let e=0,n=this.count;e<n;e++)Xe.fromBufferAttribute(this,e),Xe.applyMatrix3(t),this.setXYZ(e,Xe.x,Xe.y,Xe.z);return this}applyMatrix4(t){for(let e=0,n=this.count;e<n;e++)Xe.fromBufferAttribute(this,e),Xe.applyMatrix4(t),this.setXYZ(e,Xe.x,Xe.y,Xe.z);return this}applyNormalMatrix(t){for(let e=0,n=this.count;e<n;e++)Xe.fromBufferAttribute(this,e),Xe.applyNormalMatrix(t),this.setXYZ(e,Xe.x,Xe.y,Xe.z);return this}transformDirection(t){for(let e=0,n=this.count;e<n;e++)Xe.fromBufferAttribute(this,e),Xe.transformDirection(t),this.setXYZ(e,Xe.x,Xe.y,Xe.z);return this}set(t,e=0){return this.array.set(t,e),this}getComponent(t,e){let n=this.array[t*this.itemSize+e];return this.normalized&&(n=pr(n,this.array)),n}setComponent(t,e,n){return this.normalized&&(n=yn(n,this.array)),this.array[t*this.itemSize+e]=n,this}getX(t){let e=this.array[t*this.itemSize];return this.normalized&&(e=pr(e,this.array)),e}setX(t,e){return this.normalized&&(e=yn(e,this.array)),this.array[t*this.itemSize]=e,this}getY(t){let e=this.array[t*this.itemSize+1];return this.normalized&&(e=pr(e,this.array)),e}setY(t,e){return this.normalized&&(e=yn(e,this.array)),this.array[t*this.itemSize+1]=e,this}getZ(t){let e=this.array[t*this.itemSize+2];return this.normalized&&(e=pr(e,this.array)),e}setZ(t,e){return this.normalized&&(e=yn(e,this.array)),this.array[t*this.itemSize+2]=e,this}getW(t){let e=this.array[t*this.itemSize+3];return this.normalized&&(e=pr(e,this.array)),e}setW(t,e){return this.normalized&&(e=yn(e,this.array)),this.array[t*this.itemSize+3]=e,this}setXY(t,e,n){return t*=this.itemSize,this.normalized&&(e=yn(e,this.array),n=yn(n,this.array)),this.array[t+0]=e,this.array[t+1]=n,this}setXYZ(t,e,n,s){return t*=this.itemSize,this.normalized&&(e=yn(e,this.array),n=yn(n,this.array),s=yn(s,this.array)),this.array[t+0]=e,this.array[t+1]=n,this.array[t+2]=s,this}setXYZW(t,e,n,s,r){return t*=this.itemSize,this.normalized&&(e=yn(e,this.array),n=yn(n,this.array),s=yn(s,this.array),r=yn(r,this.array)),this.array[t+0]=e,this.array[t+1]=n,this.array[t+2]=s,this.array[t+3]=r,this}onUpload(t){return this.onUploadCallback=t,this}clone(){return new this.constructor(this.array,this.itemSize).copy(this)}toJSON(){let t={itemSize:this.itemSize,type:this.array.constructor.name,array:Array.from(this.array),normalized:this.normalized};return this.name!==""&&(t.name=this.name),this.usage!==$u&&(t.usage=this.usage),t}};var ga=class extends Be{constructor(t,e,n){super(new Uint16Array(t),e,n)}};var _a=class extends Be{constructor(t,e,n){super(new Uint32Array(t),e,n)}};var oi=class extends Be{constructor(t,e,n){super(new Float32Array(t),e,n)}},Zg=0,Xn=new Ve,Wl=new Fn,hr=new H,Dn=new Cs,to=new Cs,an=new H,cn=class i extends Fi{constructor(){super(),this.isBufferGeometry=!0,Object.defineProperty(this,"id",{value:Zg++}),this.uuid=Cr(),this.name="",this.type="BufferGeometry",this.index=null,this.indirect=null,this.attributes={},this.morphAttributes={},this.morphTargetsRelative=!1,this.groups=[],this.boundingBox=null,this.boundingSphere=null,this.drawRange={start:0,count:1/0},this.userData={}}getIndex(){return this.index}setIndex(t){return Array.isArray(t)?this.index=new(cd(t)?_a:ga)(t,1):this.index=t,this}setIndirect(t){return this.indirect=t,this}getIndirect(){return this.indirect}getAttribute(t){return this.attributes[t]}setAttribute(t,e){return this.attributes[t]=e,this}deleteAttribute(t){return delete this.attributes[t],this}hasAttribute(t){return this.attributes[t]!==void 0}addGroup(t,e,n=0){this.groups.push({start:t,count:e,materialIndex:n})}clearGroups(){this.groups=[]}setDrawRange(t,e){this.drawRange.start=t,this.drawRange.count=e}applyMatrix4(t){let e=this.attributes.position;e!==void 0&&(e.applyMatrix4(t),e.needsUpdate=!0);let n=this.attributes.normal;if(n!==void 0){let r=new te().getNormalMatrix(t);n.applyNormalMatrix(r),n.needsUpdate=!0}let s=this.attributes.tangent;return s!==void 0&&(s.transformDirection(t),s.needsUpdate=!0),this.boundingBox!==null&&this.computeBoundingBox(),this.boundingSphere!==null&&this.computeBoundingSphere(),this}applyQuaternion(t){return Xn.makeRotationFromQuaternion(t),this.applyMatrix4(Xn),this}rotateX(t){return Xn.makeRotationX(t),this.applyMatrix4(Xn),this}rotateY(t){return Xn.makeRotationY(t),this.applyMatrix4(Xn),this}rotateZ(t){return Xn.makeRotationZ(t),this.applyMatrix4(Xn),this}translate(t,e,n){return Xn.makeTranslation(t,e,n),this.applyMatrix4(Xn),this}scale(t,e,n){return Xn.makeScale(t,e,n),this.applyMatrix4(Xn),this}lookAt(t){return Wl.lookAt(t),Wl.updateMatrix(),this.applyMatrix4(Wl.matrix),this}center(){return this.computeBoundingBox(),this.boundingBox.getCenter(hr).negate(),this.translate(hr.x,hr.y,hr.z),this}setFromPoints(t){let e=this.getAttribute("position");if(e===void 0){let n=[];for(let s=0,r=t.length;s<r;s++){let o=t[s];n.push(o.x,o.y,o.z||0)}this.setAttribute("position",new oi(n,3))}else{for(let n=0,s=e.count;n<s;n++){let r=t[n];e.setXYZ(n,r.x,r.y,r.z||0)}t.length>e.count&&console.warn("THREE.BufferGeometry: Buffer size too small for points data. Use .dispose() and create a new geometry."),e.needsUpdate=!0}return this}computeBoundingBox(){this.boundingBox===null&&(this.boundingBox=new Cs);let t=this.attributes.position,e=this.morphAttributes.position;if(t&&t.isGLBufferAttribute){console.error("THREE.BufferGeometry.computeBoundingBox(): GLBufferAttribute requires a manual bounding box.",this),this.boundingBox.set(new H(-1/0,-1/0,-1/0),new H(1/0,1/0,1/0));return}if(t!==void 0){if(this.boundingBox.setFromBufferAttribute(t),e)for(let n=0,s=e.length;n<s;n++){let r=e[n];Dn.setFromBufferAttribute(r),this.morphTargetsRelative?(an.addVectors(this.boundingBox.min,Dn.min),this.boundingBox.expandByPoint(an),an.addVectors(this.boundingBox.max,Dn.max),this.boundingBox.expandByPoint(an)):(this.boundingBox.expandByPoint(Dn.min),this.boundingBox.expandByPoint(Dn.max))}}else this.boundingBox.makeEmpty();(isNaN(this.boundingBox.min.x)||isNaN(this.boundingBox.min.y)||isNaN(this.boundingBox.min.z))&&console.error('THREE.BufferGeometry.computeBoundingBox(): Computed min/max have NaN values. The "position" attribute is likely to have NaN values.',this)}computeBoundingSphere(){this.boundingSphere===null&&(this.boundingSphere=new Rs);let t=this.attributes.position,e=this.morphAttributes.position;if(t&&t.isGLBufferAttribute){console.error("THREE.BufferGeometry.computeBoundingSphere(): GLBufferAttribute requires a manual bounding sphere.",this),this.boundingSphere.set(new H,1/0);return}if(t){let n=this.boundingSphere.center;if(Dn.setFromBufferAttribute(t),e)for(let r=0,o=e.length;r<o;r++){let a=e[r];to.setFromBufferAttribute(a),this.morphTargetsRelative?(an.addVectors(Dn.min,to.min),Dn.expandByPoint(an),an.addVectors(Dn.max,to.max),Dn.expandByPoint(an)):(Dn.expandByPoint(to.min),Dn.expandByPoint(to.max))}Dn.getCenter(n);let s=0;for(let r=0,o=t.count;r<o;r++)an.fromBufferAttribute(t,r),s=Math.max(s,n.distanceToSquared(an));if(e)for(let r=0,o=e.length;r<o;r++){let a=e[r],l=this.morphTargetsRelative;for(let c=0,u=a.count;c<u;c++)an.fromBufferAttribute(a,c),l&&(hr.fromBufferAttribute(t,c),an.add(hr)),s=Math.max(s,n.distanceToSquared(an))}this.boundingSphere.radius=Math.sqrt(s),isNaN(this.boundingSphere.radius)&&console.error('THREE.BufferGeometry.computeBoundingSphere(): Computed radius is NaN. The "position" attribute is likely to have NaN values.',this)}}computeTangents(){let t=this.index,e=this.attributes;if(t===null||e.position===void 0||e.normal===void 0||e.uv===void 0){console.error("THREE.BufferGeometry: .computeTangents() failed. Missing required attributes (index, position, normal or uv)");return}let n=e.position,s=e.normal,r=e.uv;this.hasAttribute("tangent")===!1&&this.setAttribute("tangent",new Be(new Float32Array(4*n.count),4));let o=this.getAttribute("tangent"),a=[],l=[];for(let N=0;N<n.count;N++)a[N]=new H,l[N]=new H;let c=new H,u=new H,f=new H,h=new ie,d=new ie,_=new ie,x=new H,m=new H;function p(N,E,M){c.fromBufferAttribute(n,N),u.fromBufferAttribute(n,E),f.fromBufferAttribute(n,M),h.fromBufferAttribute(r,N),d.fromBufferAttribute(r,E),_.fromBufferAttribute(r,M),u.sub(c),f.sub(c),d.sub(h),_.sub(h);let C=1/(d.x*_.y-_.x*d.y);isFinite(C)&&(x.copy(u).multiplyScalar(_.y).addScaledVector(f,-d.y).multiplyScalar(C),m.copy(f).multiplyScalar(d.x).addScaledVector(u,-_.x).multiplyScalar(C),a[N].add(x),a[E].add(x),a[M].add(x),l[N].add(m),l[E].add(m),l[M].add(m))}let T=this.groups;T.length===0&&(T=[{start:0,count:t.count}]);for(let N=0,E=T.length;N<E;++N){let M=T[N],C=M.start,W=M.count;for(let V=C,Y=C+W;V<Y;V+=3)p(t.getX(V+0),t.getX(V+1),t.getX(V+2))}let w=new H,b=new H,D=new H,L=new H;function I(N){D.fromBufferAttribute(s,N),L.copy(D);let E=a[N];w.copy(E),w.sub(D.multiplyScalar(D.dot(E))).normalize(),b.crossVectors(L,E);let C=b.dot(l[N])<0?-1:1;o.setXYZW(N,w.x,w.y,w.z,C)}for(let N=0,E=T.length;N<E;++N){let M=T[N],C=M.start,W=M.count;for(let V=C,Y=C+W;V<Y;V+=3)I(t.getX(V+0)),I(t.getX(V+1)),I(t.getX(V+2))}}computeVertexNormals(){let t=this.index,e=this.getAttribute("position");if(e!==void 0){let n=this.getAttribute("normal");if(n===void 0)n=new Be(new Float32Array(e.count*3),3),this.setAttribute("normal",n);else for(let h=0,d=n.count;h<d;h++)n.setXYZ(h,0,0,0);let s=new H,r=new H,o=new H,a=new H,l=new H,c=new H,u=new H,f=new H;if(t)for(let h=0,d=t.count;h<d;h+=3){let _=t.getX(h+0),x=t.getX(h+1),m=t.getX(h+2);s.fromBufferAttribute(e,_),r.fromBufferAttribute(e,x),o.fromBufferAttribute(e,m),u.subVectors(o,r),f.subVectors(s,r),u.cross(f),a.fromBufferAttribute(n,_),l.fromBufferAttribute(n,x),c.fromBufferAttribute(n,m),a.add(u),l.add(u),c.add(u),n.setXYZ(_,a.x,a.y,a.z),n.setXYZ(x,l.x,l.y,l.z),n.setXYZ(m,c.x,c.y,c.z)}else for(let h=0,d=e.count;h<d;h+=3)s.fromBufferAttribute(e,h+0),r.fromBufferAttribute(e,h+1),o.fromBufferAttribute(e,h+2),u.subVectors(o,r),f.subVectors(s,r),u.cross(f),n.setXYZ(h+0,u.x,u.y,u.z),n.setXYZ(h+1,u.x,u.y,u.z),n.setXYZ(h+2,u.x,u.y,u.z);this.normalizeNormals(),n.needsUpdate=!0}}normalizeNormals(){let t=this.attributes.normal;for(let e=0,n=t.count;e<n;e++)an.fromBufferAttribute(t,e),an.normalize(),t.setXYZ(e,an.x,an.y,an.z)}toNonIndexed(){function t(a,l){let c=a.array,u=a.itemSize,f=a.normalized,h=new c.constructor(l.length*u),d=0,_=0;for(let x=0,m=l.length;x<m;x++){a.isInterleavedBufferAttribute?d=l[x]*a.data.stride+a.offset:d=l[x]*u;for(let p=0;p<u;p++)h[_++]=c[d++]}return new Be(h,u,f)}if(this.index===null)return console.warn("THREE.BufferGeometry.toNonIndexed(): BufferGeometry is already non-indexed."),this;let e=new i,n=this.index.array,s=this.attributes;for(let a in s){let l=s[a],c=t(l,n);e.setAttribute(a,c)}let r=this.morphAttributes;for(let a in r){let l=[],c=r[a];for(let u=0,f=c.length;u<f;u++){let h=c[u],d=t(h,n);l.push(d)}e.morphAttributes[a]=l}e.morphTargetsRelative=this.morphTargetsRelative;let o=this.groups;for(let a=0,l=o.length;a<l;a++){let c=o[a];e.addGroup(c.start,c.count,c.materialIndex)}return e}toJSON(){let t={metadata:{version:4.6,type:"BufferGeometry",generator:"BufferGeometry.toJSON"}};if(t.uuid=this.uuid,t.type=this.type,this.name!==""&&(t.name=this.name),Object.keys(this.userData).length>0&&(t.userData=this.userData),this.parameters!==void 0){let l=this.parameters;for(let c in l)l[c]!==void 0&&(t[c]=l[c]);return t}t.data={attributes:{}};let e=this.index;e!==null&&(t.data.index={type:e.array.constructor.name,array:Array.prototype.slice.call(e.array)});let n=this.attributes;for(let l in n){let c=n[l];t.data.attributes[l]=c.toJSON(t.data)}let s={},r=!1;for(let l in this.morphAttributes){let c=this.morphAttributes[l],u=[];for(let f=0,h=c.length;f<h;f++){let d=c[f];u.push(d.toJSON(t.data))}u.length>0&&(s[l]=u,r=!0)}r&&(t.data.morphAttributes=s,t.data.morphTargetsRelative=this.morphTargetsRelative);let o=this.groups;o.length>0&&(t.data.groups=JSON.parse(JSON.stringify(o)));let a=this.boundingSphere;return a!==null&&(t.data.boundingSphere={center:a.center.toArray(),radius:a.radius}),t}clone(){return new this.constructor().copy(this)}copy(t){this.index=null,this.attributes={},this.morphAttributes={},this.groups=[],this.boundingBox=null,this.boundingSphere=null;let e={};this.name=t.name;let n=t.index;n!==null&&this.setIndex(n.clone(e));let s=t.attributes;for(let c in s){let u=s[c];this.setAttribute(c,u.clone(e))}let r=t.morphAttributes;for(let c in r){let u=[],f=r[c];for(let h=0,d=f.length;h<d;h++)u.push(f[h].clone(e));this.morphAttributes[c]=u}this.morphTargetsRelative=t.morphTargetsRelative;let o=t.groups;for(let c=0,u=o.length;c<u;c++){let f=o[c];this.addGroup(f.start,f.count,f.materialIndex)}let a=t.boundingBox;a!==null&&(this.boundingBox=a.clone());let l=t.boundingSphere;return l!==null&&(this.boundingSphere=l.clone()),this.drawRange.start=t.drawRange.start,this.drawRange.count=t.drawRange.count,this.userData=t.userData,this}dispose(){this.dispatchEvent({type:"dispose"})}},df=new Ve,_s=new Ps,Ho=new Rs,pf=new H,Go=new H,Wo=new H,Xo=new H,Xl=new H,Yo=new H,mf=new H,qo=new H,En=class extends Fn{constructor(t=new cn,e=new ma){super(),this.isMesh=!0,this.type="Mesh",this.geometry=t,this.material=e,this.updateMorphTargets()}copy(t,e){return super.copy(t,e),t.morphTargetInfluences!==void 0&&(this.morphTargetInfluences=t.morphTargetInfluences.slice()),t.morphTargetDictionary!==void 0&&(this.morphTargetDictionary=Object.assign({},t.morphTargetDictionary)),this.material=Array.isArray(t.material)?t.material.slice():t.material,this.geometry=t.geometry,this}updateMorphTargets(){let e=this.geometry.morphAttributes,n=Object.keys(e);if(n.length>0){let s=e[n[0]];if(s!==void 0){this.morphTargetInfluences=[],this.morphTargetDictionary={};for(let r=0,o=s.length;r<o;r++){let a=s[r].name||String(r);this.morphTargetInfluences.push(0),this.morphTargetDictionary[a]=r}}}}getVertexPosition(t,e){let n=this.geometry,s=n.attributes.position,r=n.morphAttributes.position,o=n.morphTargetsRelative;e.fromBufferAttribute(s,t);let a=this.morphTargetInfluences;if(r&&a){Yo.set(0,0,0);for(let l=0,c=r.length;l<c;l++){let u=a[l],f=r[l];u!==0&&(Xl.fromBufferAttribute(f,t),o?Yo.addScaledVector(Xl,u):Yo.addScaledVector(Xl.sub(e),u))}e.add(Yo)}return e}raycast(t,e){let n=this.geometry,s=this.material,r=this.matrixWorld;s!==void 0&&(n.boundingSphere===null&&n.computeBoundingSphere(),Ho.copy(n.boundingSphere),Ho.applyMatrix4(r),_s.copy(t.ray).recast(t.near),!(Ho.containsPoint(_s.origin)===!1&&(_s.intersectSphere(Ho,pf)===null||_s.origin.distanceToSquared(pf)>(t.far-t.near)**2))&&(df.copy(r).invert(),_s.copy(t.ray).applyMatrix4(df),!(n.boundingBox!==null&&_s.intersectsBox(n.boundingBox)===!1)&&this._computeIntersections(t,e,_s)))}_computeIntersections(t,e,n){let s,r=this.geometry,o=this.material,a=r.index,l=r.attributes.position,c=r.attributes.uv,u=r.attributes.uv1,f=r.attributes.normal,h=r.groups,d=r.drawRange;if(a!==null)if(Array.isArray(o))for(let _=0,x=h.length;_<x;_++){let m=h[_],p=o[m.materialIndex],T=Math.max(m.start,d.start),w=Math.min(a.count,Math.min(m.start+m.count,d.start+d.count));for(let b=T,D=w;b<D;b+=3){let L=a.getX(b),I=a.getX(b+1),N=a.getX(b+2);s=$o(this,p,t,n,c,u,f,L,I,N),s&&(s.faceIndex=Math.floor(b/3),s.face.materialIndex=m.materialIndex,e.push(s))}}else{let _=Math.max(0,d.start),x=Math.min(a.count,d.start+d.count);for(let m=_,p=x;m<p;m+=3){let T=a.getX(m),w=a.getX(m+1),b=a.getX(m+2);s=$o(this,o,t,n,c,u,f,T,w,b),s&&(s.faceIndex=Math.floor(m/3),e.push(s))}}else if(l!==void 0)if(Array.isArray(o))for(let _=0,x=h.length;_<x;_++){let m=h[_],p=o[m.materialIndex],T=Math.max(m.start,d.start),w=Math.min(l.count,Math.min(m.start+m.count,d.start+d.count));for(let b=T,D=w;b<D;b+=3){let L=b,I=b+1,N=b+2;s=$o(this,p,t,n,c,u,f,L,I,N),s&&(s.faceIndex=Math.floor(b/3),s.face.materialIndex=m.materialIndex,e.push(s))}}else{let _=Math.max(0,d.start),x=Math.min(l.count,d.start+d.count);for(let m=_,p=x;m<p;m+=3){let T=m,w=m+1,b=m+2;s=$o(this,o,t,n,c,u,f,T,w,b),s&&(s.faceIndex=Math.floor(m/3),e.push(s))}}}};function Jg(i,t,e,n,s,r,o,a){let l;if(t.side===Tn?l=n.intersectTriangle(o,r,s,!0,a):l=n.intersectTriangle(s,r,o,t.side===is,a),l===null)return null;qo.copy(a),qo.applyMatrix4(i.matrixWorld);let c=e.ray.origin.distanceTo(qo);return c<e.near||c>e.far?null:{distance:c,point:qo.clone(),object:i}}function $o(i,t,e,n,s,r,o,a,l,c){i.getVertexPosition(a,Go),i.getVertexPosition(l,Wo),i.getVertexPosition(c,Xo);let u=Jg(i,t,e,n,Go,Wo,Xo,mf);if(u){let f=new H;bs.getBarycoord(mf,Go,Wo,Xo,f),s&&(u.uv=bs.getInterpolatedAttribute(s,a,l,c,f,new ie)),r&&(u.uv1=bs.getInterpolatedAttribute(r,a,l,c,f,new ie)),o&&(u.normal=bs.getInterpolatedAttribute(o,a,l,c,f,new H),u.normal.dot(n.direction)>0&&u.normal.multiplyScalar(-1));let h={a,b:l,c,normal:new H,materialIndex:0};bs.getNormal(Go,Wo,Xo,h.normal),u.face=h,u.barycoord=f}return u}var co=class i extends cn{constructor(t=1,e=1,n=1,s=1,r=1,o=1){super(),this.type="BoxGeometry",this.parameters={width:t,height:e,depth:n,widthSegments:s,heightSegments:r,depthSegments:o};let a=this;s=Math.floor(s),r=Math.floor(r),o=Math.floor(o);let l=[],c=[],u=[],f=[],h=0,d=0;_("z","y","x",-1,-1,n,e,t,o,r,0),_("z","y","x",1,-1,n,e,-t,o,r,1),_("x","z","y",1,1,t,n,e,s,o,2),_("x","z","y",1,-1,t,n,-e,s,o,3),_("x","y","z",1,-1,t,e,n,s,r,4),_("x","y","z",-1,-1,t,e,-n,s,r,5),this.setIndex(l),this.setAttribute("position",new oi(c,3)),this.setAttribute("normal",new oi(u,3)),this.setAttribute("uv",new oi(f,2));function _(x,m,p,T,w,b,D,L,I,N,E){let M=b/I,C=D/N,W=b/2,V=D/2,Y=L/2,j=I+1,Z=N+1,et=0,K=0,ht=new H;for(let ot=0;ot<Z;ot++){let mt=ot*C-V;for(let dt=0;dt<j;dt++){let Gt=dt*M-W;ht[x]=Gt*T,ht[m]=mt*w,ht[p]=Y,c.push(ht.x,ht.y,ht.z),ht[x]=0,ht[m]=0,ht[p]=L>0?1:-1,u.push(ht.x,ht.y,ht.z),f.push(dt/I),f.push(1-ot/N),et+=1}}for(let ot=0;ot<N;ot++)for(let mt=0;mt<I;mt++){let dt=h+mt+j*ot,Gt=h+mt+j*(ot+1),$=h+(mt+1)+j*(ot+1),ct=h+(mt+1)+j*ot;l.push(dt,Gt,ct),l.push(Gt,$,ct),K+=6}a.addGroup(d,K,E),d+=K,h+=et}}copy(t){return super.copy(t),this.parameters=Object.assign({},t.parameters),this}static fromJSON(t){return new i(t.width,t.height,t.depth,t.widthSegments,t.heightSegments,t.depthSegments)}};function Tr(i){let t={};for(let e in i){t[e]={};for(let n in i[e]){let s=i[e][n];s&&(s.isColor||s.isMatrix3||s.isMatrix4||s.isVector2||s.isVector3||s.isVector4||s.isTexture||s.isQuaternion)?s.isRenderTargetTexture?(console.warn("UniformsUtils: Textures of render targets cannot be cloned via cloneUniforms() or mergeUniforms()."),t[e][n]=null):t[e][n]=s.clone():Array.isArray(s)?t[e][n]=s.slice():t[e][n]=s}}return t}function Mn(i){let t={};for(let e=0;e<i.length;e++){let n=Tr(i[e]);for(let s in n)t[s]=n[s]}return t}function Kg(i){let t=[];for(let e=0;e<i.length;e++)t.push(i[e].clone());return t}function ud(i){let t=i.getRenderTarget();return t===null?i.outputColorSpace:t.isXRRenderTarget===!0?t.texture.colorSpace:de.workingColorSpace}var jg={clone:Tr,merge:Mn},Qg=`void main() {
	gl_Position = projectionMatrix * modelViewMatrix * vec4( position, 1.0 );
}`,t0=`void main() {
	gl_FragColor = vec4( 1.0, 0.0, 0.0, 1.0 );
}`,An=class extends ss{static get type(){return"ShaderMaterial"}constructor(t){super(),this.isShaderMaterial=!0,this.defines={},this.uniforms={},this.uniformsGroups=[],this.vertexShader=Qg,this.fragmentShader=t0,this.linewidth=1,this.wireframe=!1,this.wireframeLinewidth=1,this.fog=!1,this.lights=!1,this.clipping=!1,this.forceSinglePass=!0,this.extensions={clipCullDistance:!1,multiDraw:!1},this.defaultAttributeValues={color:[1,1,1],uv:[0,0],uv1:[0,0]},this.index0AttributeName=void 0,this.uniformsNeedUpdate=!1,this.glslVersion=null,t!==void 0&&this.setValues(t)}copy(t){return super.copy(t),this.fragmentShader=t.fragmentShader,this.vertexShader=t.vertexShader,this.uniforms=Tr(t.uniforms),this.uniformsGroups=Kg(t.uniformsGroups),this.defines=Object.assign({},t.defines),this.wireframe=t.wireframe,this.wireframeLinewidth=t.wireframeLinewidth,this.fog=t.fog,this.lights=t.lights,this.clipping=t.clipping,this.extensions=Object.assign({},t.extensions),this.glslVersion=t.glslVersion,this}toJSON(t){let e=super.toJSON(t);e.glslVersion=this.glslVersion,e.uniforms={};for(let s in this.uniforms){let o=this.uniforms[s].value;o&&o.isTexture?e.uniforms[s]={type:"t",value:o.toJSON(t).uuid}:o&&o.isColor?e.uniforms[s]={type:"c",value:o.getHex()}:o&&o.isVector2?e.uniforms[s]={type:"v2",value:o.toArray()}:o&&o.isVector3?e.uniforms[s]={type:"v3",value:o.toArray()}:o&&o.isVector4?e.uniforms[s]={type:"v4",value:o.toArray()}:o&&o.isMatrix3?e.uniforms[s]={type:"m3",value:o.toArray()}:o&&o.isMatrix4?e.uniforms[s]={type:"m4",value:o.toArray()}:e.uniforms[s]={value:o}}Object.keys(this.defines).length>0&&(e.defines=this.defines),e.vertexShader=this.vertexShader,e.fragmentShader=this.fragmentShader,e.lights=this.lights,e.clipping=this.clipping;let n={};for(let s in this.extensions)this.extensions[s]===!0&&(n[s]=!0);return Object.keys(n).length>0&&(e.extensions=n),e}},xa=class extends Fn{constructor(){super(),this.isCamera=!0,this.type="Camera",this.matrixWorldInverse=new Ve,this.projectionMatrix=new Ve,this.projectionMatrixInverse=new Ve,this.coordinateSystem=Ni}copy(t,e){return super.copy(t,e),this.matrixWorldInverse.copy(t.matrixWorldInverse),this.projectionMatrix.copy(t.projectionMatrix),this.projectionMatrixInverse.copy(t.projectionMatrixInverse),this.coordinateSystem=t.coordinateSystem,this}getWorldDirection(t){return super.getWorldDirection(t).negate()}updateMatrixWorld(t){super.updateMatrixWorld(t),this.matrixWorldInverse.copy(this.matrixWorld).invert()}updateWorldMatrix(t,e){super.updateWorldMatrix(t,e),this.matrixWorldInverse.copy(this.matrixWorld).invert()}clone(){return new this.constructor().copy(this)}},Qi=new H,gf=new ie,_f=new ie,Nn=class extends xa{constructor(t=50,e=1,n=.1,s=2e3){super(),this.isPerspectiveCamera=!0,this.type="PerspectiveCamera",this.fov=t,this.zoom=1,this.near=n,this.far=s,this.focus=10,this.aspect=e,this.view=null,this.filmGauge=35,this.filmOffset=0,this.updateProjectionMatrix()}copy(t,e){return super.copy(t,e),this.fov=t.fov,this.zoom=t.zoom,this.near=t.near,this.far=t.far,this.focus=t.focus,this.aspect=t.aspect,this.view=t.view===null?null:Object.assign({},t.view),this.filmGauge=t.filmGauge,this.filmOffset=t.filmOffset,this}setFocalLength(t){let e=.5*this.getFilmHeight()/t;this.fov=lo*2*Math.atan(e),this.updateProjectionMatrix()}getFocalLength(){let t=Math.tan(so*.5*this.fov);return .5*this.getFilmHeight()/t}getEffectiveFOV(){return lo*2*Math.atan(Math.tan(so*.5*this.fov)/this.zoom)}getFilmWidth(){return this.filmGauge*Math.min(this.aspect,1)}getFilmHeight(){return this.filmGauge/Math.max(this.aspect,1)}getViewBounds(t,e,n){Qi.set(-1,-1,.5).applyMatrix4(this.projectionMatrixInverse),e.set(Qi.x,Qi.y).multiplyScalar(-t/Qi.z),Qi.set(1,1,.5).applyMatrix4(this.projectionMatrixInverse),n.set(Qi.x,Qi.y).multiplyScalar(-t/Qi.z)}getViewSize(t,e){return this.getViewBounds(t,gf,_f),e.subVectors(_f,gf)}setViewOffset(t,e,n,s,r,o){this.aspect=t/e,this.view===null&&(this.view={enabled:!0,fullWidth:1,fullHeight:1,offsetX:0,offsetY:0,width:1,height:1}),this.view.enabled=!0,this.view.fullWidth=t,this.view.fullHeight=e,this.view.offsetX=n,this.view.offsetY=s,this.view.width=r,this.view.height=o,this.updateProjectionMatrix()}clearViewOffset(){this.view!==null&&(this.view.enabled=!1),this.updateProjectionMatrix()}updateProjectionMatrix(){let t=this.near,e=t*Math.tan(so*.5*this.fov)/this.zoom,n=2*e,s=this.aspect*n,r=-.5*s,o=this.view;if(this.view!==null&&this.view.enabled){let l=o.fullWidth,c=o.fullHeight;r+=o.offsetX*s/l,e-=o.offsetY*n/c,s*=o.width/l,n*=o.height/c}let a=this.filmOffset;a!==0&&(r+=t*a/this.getFilmWidth()),this.projectionMatrix.makePerspective(r,r+s,e,e-n,t,this.far,this.coordinateSystem),this.projectionMatrixInverse.copy(this.projectionMatrix).invert()}toJSON(t){let e=super.toJSON(t);return e.object.fov=this.fov,e.object.zoom=this.zoom,e.object.near=this.near,e.object.far=this.far,e.object.focus=this.focus,e.object.aspect=this.aspect,this.view!==null&&(e.object.view=Object.assign({},this.view)),e.object.filmGauge=this.filmGauge,e.object.filmOffset=this.filmOffset,e}},ur=-90,fr=1,Gc=class extends Fn{constructor(t,e,n){super(),this.type="CubeCamera",this.renderTarget=n,this.coordinateSystem=null,this.activeMipmapLevel=0;let s=new Nn(ur,fr,t,e);s.layers=this.layers,this.add(s);let r=new Nn(ur,fr,t,e);r.layers=this.layers,this.add(r);let o=new Nn(ur,fr,t,e);o.layers=this.layers,this.add(o);let a=new Nn(ur,fr,t,e);a.layers=this.layers,this.add(a);let l=new Nn(ur,fr,t,e);l.layers=this.layers,this.add(l);let c=new Nn(ur,fr,t,e);c.layers=this.layers,this.add(c)}updateCoordinateSystem(){let t=this.coordinateSystem,e=this.children.concat(),[n,s,r,o,a,l]=e;for(let c of e)this.remove(c);if(t===Ni)n.up.set(0,1,0),n.lookAt(1,0,0),s.up.set(0,1,0),s.lookAt(-1,0,0),r.up.set(0,0,-1),r.lookAt(0,1,0),o.up.set(0,0,1),o.lookAt(0,-1,0),a.up.set(0,1,0),a.lookAt(0,0,1),l.up.set(0,1,0),l.lookAt(0,0,-1);else if(t===ha)n.up.set(0,-1,0),n.lookAt(-1,0,0),s.up.set(0,-1,0),s.lookAt(1,0,0),r.up.set(0,0,1),r.lookAt(0,1,0),o.up.set(0,0,-1),o.lookAt(0,-1,0),a.up.set(0,-1,0),a.lookAt(0,0,1),l.up.set(0,-1,0),l.lookAt(0,0,-1);else throw new Error("THREE.CubeCamera.updateCoordinateSystem(): Invalid coordinate system: "+t);for(let c of e)this.add(c),c.updateMatrixWorld()}update(t,e){this.parent===null&&this.updateMatrixWorld();let{renderTarget:n,activeMipmapLevel:s}=this;this.coordinateSystem!==t.coordinateSystem&&(this.coordinateSystem=t.coordinateSystem,this.updateCoordinateSystem());let[r,o,a,l,c,u]=this.children,f=t.getRenderTarget(),h=t.getActiveCubeFace(),d=t.getActiveMipmapLevel(),_=t.xr.enabled;t.xr.enabled=!1;let x=n.texture.generateMipmaps;n.texture.generateMipmaps=!1,t.setRenderTarget(n,0,s),t.render(e,r),t.setRenderTarget(n,1,s),t.render(e,o),t.setRenderTarget(n,2,s),t.render(e,a),t.setRenderTarget(n,3,s),t.render(e,l),t.setRenderTarget(n,4,s),t.render(e,c),n.texture.generateMipmaps=x,t.setRenderTarget(n,5,s),t.render(e,u),t.setRenderTarget(f,h,d),t.xr.enabled=_,n.texture.needsPMREMUpdate=!0}},va=class extends On{constructor(t,e,n,s,r,o,a,l,c,u){t=t!==void 0?t:[],e=e!==void 0?e:Sr,super(t,e,n,s,r,o,a,l,c,u),this.isCubeTexture=!0,this.flipY=!1}get images(){return this.image}set images(t){this.image=t}},Wc=class extends Bi{constructor(t=1,e={}){super(t,t,e),this.isWebGLCubeRenderTarget=!0;let n={width:t,height:t,depth:1},s=[n,n,n,n,n,n];this.texture=new va(s,e.mapping,e.wrapS,e.wrapT,e.magFilter,e.minFilter,e.format,e.type,e.anisotropy,e.colorSpace),this.texture.isRenderTargetTexture=!0,this.texture.generateMipmaps=e.generateMipmaps!==void 0?e.generateMipmaps:!1,this.texture.minFilter=e.minFilter!==void 0?e.minFilter:qn}fromEquirectangularTexture(t,e){this.texture.type=e.type,this.texture.colorSpace=e.colorSpace,this.texture.generateMipmaps=e.generateMipmaps,this.texture.minFilter=e.minFilter,this.texture.magFilter=e.magFilter;let n={uniforms:{tEquirect:{value:null}},vertexShader:`

				varying vec3 vWorldDirection;

				vec3 transformDirection( in vec3 dir, in mat4 matrix ) {

					return normalize( ( matrix * vec4( dir, 0.0 ) ).xyz );

				}

				void main() {

					vWorldDirection = transformDirection( position, modelMatrix );

					#include <begin_vertex>
					#include <project_vertex>

				}
			`,fragmentShader:`

				uniform sampler2D tEquirect;

				varying vec3 vWorldDirection;

				#include <common>

				void main() {

					vec3 direction = normalize( vWorldDirection );

					vec2 sampleUV = equirectUv( direction );

					gl_FragColor = texture2D( tEquirect, sampleUV );

				}
			`},s=new co(5,5,5),r=new An({name:"CubemapFromEquirect",uniforms:Tr(n.uniforms),vertexShader:n.vertexShader,fragmentShader:n.fragmentShader,side:Tn,blending:es});r.uniforms.tEquirect.value=e;let o=new En(s,r),a=e.minFilter;return e.minFilter===Ts&&(e.minFilter=qn),new Gc(1,10,this).update(t,o),e.minFilter=a,o.geometry.dispose(),o.material.dispose(),this}clear(t,e,n,s){let r=t.getRenderTarget();for(let o=0;o<6;o++)t.setRenderTarget(this,o),t.clear(e,n,s);t.setRenderTarget(r)}},Yl=new H,e0=new H,n0=new te,ii=class{constructor(t=new H(1,0,0),e=0){this.isPlane=!0,this.normal=t,this.constant=e}set(t,e){return this.normal.copy(t),this.constant=e,this}setComponents(t,e,n,s){return this.normal.set(t,e,n),this.constant=s,this}setFromNormalAndCoplanarPoint(t,e){return this.normal.copy(t),this.constant=-e.dot(this.normal),this}setFromCoplanarPoints(t,e,n){let s=Yl.subVectors(n,e).cross(e0.subVectors(t,e)).normalize();return this.setFromNormalAndCoplanarPoint(s,t),this}copy(t){return this.normal.copy(t.normal),this.constant=t.constant,this}normalize(){let t=1/this.normal.length();return this.normal.multiplyScalar(t),this.constant*=t,this}negate(){return this.constant*=-1,this.normal.negate(),this}distanceToPoint(t){return this.normal.dot(t)+this.constant}distanceToSphere(t){return this.distanceToPoint(t.center)-t.radius}projectPoint(t,e){return e.copy(t).addScaledVector(this.normal,-this.distanceToPoint(t))}intersectLine(t,e){let n=t.delta(Yl),s=this.normal.dot(n);if(s===0)return this.distanceToPoint(t.start)===0?e.copy(t.start):null;let r=-(t.start.dot(this.normal)+this.constant)/s;return r<0||r>1?null:e.copy(t.start).addScaledVector(n,r)}intersectsLine(t){let e=this.distanceToPoint(t.start),n=this.distanceToPoint(t.end);return e<0&&n>0||n<0&&e>0}intersectsBox(t){return t.intersectsPlane(this)}intersectsSphere(t){return t.intersectsPlane(this)}coplanarPoint(t){return t.copy(this.normal).multiplyScalar(-this.constant)}applyMatrix4(t,e){let n=e||n0.getNormalMatrix(t),s=this.coplanarPoint(Yl).applyMatrix4(t),r=this.normal.applyMatrix3(n).normalize();return this.constant=-s.dot(r),this}translate(t){return this.constant-=t.dot(this.normal),this}equals(t){return t.normal.equals(this.normal)&&t.constant===this.constant}clone(){return new this.constructor().copy(this)}},xs=new Rs,Zo=new H,ya=class{constructor(t=new ii,e=new ii,n=new ii,s=new ii,r=new ii,o=new ii){this.planes=[t,e,n,s,r,o]}set(t,e,n,s,r,o){let a=this.planes;return a[0].copy(t),a[1].copy(e),a[2].copy(n),a[3].copy(s),a[4].copy(r),a[5].copy(o),this}copy(t){let e=this.planes;for(let n=0;n<6;n++)e[n].copy(t.planes[n]);return this}setFromProjectionMatrix(t,e=Ni){let n=this.planes,s=t.elements,r=s[0],o=s[1],a=s[2],l=s[3],c=s[4],u=s[5],f=s[6],h=s[7],d=s[8],_=s[9],x=s[10],m=s[11],p=s[12],T=s[13],w=s[14],b=s[15];if(n[0].setComponents(l-r,h-c,m-d,b-p).normalize(),n[1].setComponents(l+r,h+c,m+d,b+p).normalize(),n[2].setComponents(l+o,h+u,m+_,b+T).normalize(),n[3].setComponents(l-o,h-u,m-_,b-T).normalize(),n[4].setComponents(l-a,h-f,m-x,b-w).normalize(),e===Ni)n[5].setComponents(l+a,h+f,m+x,b+w).normalize();else if(e===ha)n[5].setComponents(a,f,x,w).normalize();else throw new Error("THREE.Frustum.setFromProjectionMatrix(): Invalid coordinate system: "+e);return this}intersectsObject(t){if(t.boundingSphere!==void 0)t.boundingSphere===null&&t.computeBoundingSphere(),xs.copy(t.boundingSphere).applyMatrix4(t.matrixWorld);else{let e=t.geometry;e.boundingSphere===null&&e.computeBoundingSphere(),xs.copy(e.boundingSphere).applyMatrix4(t.matrixWorld)}return this.intersectsSphere(xs)}intersectsSprite(t){return xs.center.set(0,0,0),xs.radius=.7071067811865476,xs.applyMatrix4(t.matrixWorld),this.intersectsSphere(xs)}intersectsSphere(t){let e=this.planes,n=t.center,s=-t.radius;for(let r=0;r<6;r++)if(e[r].distanceToPoint(n)<s)return!1;return!0}intersectsBox(t){let e=this.planes;for(let n=0;n<6;n++){let s=e[n];if(Zo.x=s.normal.x>0?t.max.x:t.min.x,Zo.y=s.normal.y>0?t.max.y:t.min.y,Zo.z=s.normal.z>0?t.max.z:t.min.z,s.distanceToPoint(Zo)<0)return!1}return!0}containsPoint(t){let e=this.planes;for(let n=0;n<6;n++)if(e[n].distanceToPoint(t)<0)return!1;return!0}clone(){return new this.constructor().copy(this)}};function fd(){let i=null,t=!1,e=null,n=null;function s(r,o){e(r,o),n=i.requestAnimationFrame(s)}return{start:function(){t!==!0&&e!==null&&(n=i.requestAnimationFrame(s),t=!0)},stop:function(){i.cancelAnimationFrame(n),t=!1},setAnimationLoop:function(r){e=r},setContext:function(r){i=r}}}function i0(i){let t=new WeakMap;function e(a,l){let c=a.array,u=a.usage,f=c.byteLength,h=i.createBuffer();i.bindBuffer(l,h),i.bufferData(l,c,u),a.onUploadCallback();let d;if(c instanceof Float32Array)d=i.FLOAT;else if(c instanceof Uint16Array)a.isFloat16BufferAttribute?d=i.HALF_FLOAT:d=i.UNSIGNED_SHORT;else if(c instanceof Int16Array)d=i.SHORT;else if(c instanceof Uint32Array)d=i.UNSIGNED_INT;else if(c instanceof Int32Array)d=i.INT;else if(c instanceof Int8Array)d=i.BYTE;else if(c instanceof Uint8Array)d=i.UNSIGNED_BYTE;else if(c instanceof Uint8ClampedArray)d=i.UNSIGNED_BYTE;else throw new Error("THREE.WebGLAttributes: Unsupported buffer data format: "+c);return{buffer:h,type:d,bytesPerElement:c.BYTES_PER_ELEMENT,version:a.version,size:f}}function n(a,l,c){let u=l.array,f=l.updateRanges;if(i.bindBuffer(c,a),f.length===0)i.bufferSubData(c,0,u);else{f.sort((d,_)=>d.start-_.start);let h=0;for(let d=1;d<f.length;d++){let _=f[h],x=f[d];x.start<=_.start+_.count+1?_.count=Math.max(_.count,x.start+x.count-_.start):(++h,f[h]=x)}f.length=h+1;for(let d=0,_=f.length;d<_;d++){let x=f[d];i.bufferSubData(c,x.start*u.BYTES_PER_ELEMENT,u,x.start,x.count)}l.clearUpdateRanges()}l.onUploadCallback()}function s(a){return a.isInterleavedBufferAttribute&&(a=a.data),t.get(a)}function r(a){a.isInterleavedBufferAttribute&&(a=a.data);let l=t.get(a);l&&(i.deleteBuffer(l.buffer),t.delete(a))}function o(a,l){if(a.isInterleavedBufferAttribute&&(a=a.data),a.isGLBufferAttribute){let u=t.get(a);(!u||u.version<a.version)&&t.set(a,{buffer:a.buffer,type:a.type,bytesPerElement:a.elementSize,version:a.version});return}let c=t.get(a);if(c===void 0)t.set(a,e(a,l));else if(c.version<a.version){if(c.size!==a.array.byteLength)throw new Error("THREE.WebGLAttributes: The size of the buffer attribute's array buffer does not match the original size. Resizing buffer attributes is not supported.");n(c.buffer,a,l),c.version=a.version}}return{get:s,remove:r,update:o}}var Ma=class i extends cn{constructor(t=1,e=1,n=1,s=1){super(),this.type="PlaneGeometry",this.parameters={width:t,height:e,widthSegments:n,heightSegments:s};let r=t/2,o=e/2,a=Math.floor(n),l=Math.floor(s),c=a+1,u=l+1,f=t/a,h=e/l,d=[],_=[],x=[],m=[];for(let p=0;p<u;p++){let T=p*h-o;for(let w=0;w<c;w++){let b=w*f-r;_.push(b,-T,0),x.push(0,0,1),m.push(w/a),m.push(1-p/l)}}for(let p=0;p<l;p++)for(let T=0;T<a;T++){let w=T+c*p,b=T+c*(p+1),D=T+1+c*(p+1),L=T+1+c*p;d.push(w,b,L),d.push(b,D,L)}this.setIndex(d),this.setAttribute("position",new oi(_,3)),this.setAttribute("normal",new oi(x,3)),this.setAttribute("uv",new oi(m,2))}copy(t){return super.copy(t),this.parameters=Object.assign({},t.parameters),this}static fromJSON(t){return new i(t.width,t.height,t.widthSegments,t.heightSegments)}},s0=`#ifdef USE_ALPHAHASH
	if ( diffuseColor.a < getAlphaHashThreshold( vPosition ) ) discard;
#endif`,r0=`#ifdef USE_ALPHAHASH
	const float ALPHA_HASH_SCALE = 0.05;
	float hash2D( vec2 value ) {
		return fract( 1.0e4 * sin( 17.0 * value.x + 0.1 * value.y ) * ( 0.1 + abs( sin( 13.0 * value.y + value.x ) ) ) );
	}
	float hash3D( vec3 value ) {
		return hash2D( vec2( hash2D( value.xy ), value.z ) );
	}
	float getAlphaHashThreshold( vec3 position ) {
		float maxDeriv = max(
			length( dFdx( position.xyz ) ),
			length( dFdy( position.xyz ) )
		);
		float pixScale = 1.0 / ( ALPHA_HASH_SCALE * maxDeriv );
		vec2 pixScales = vec2(
			exp2( floor( log2( pixScale ) ) ),
			exp2( ceil( log2( pixScale ) ) )
		);
		vec2 alpha = vec2(
			hash3D( floor( pixScales.x * position.xyz ) ),
			hash3D( floor( pixScales.y * position.xyz ) )
		);
		float lerpFactor = fract( log2( pixScale ) );
		float x = ( 1.0 - lerpFactor ) * alpha.x + lerpFactor * alpha.y;
		float a = min( lerpFactor, 1.0 - lerpFactor );
		vec3 cases = vec3(
			x * x / ( 2.0 * a * ( 1.0 - a ) ),
			( x - 0.5 * a ) / ( 1.0 - a ),
			1.0 - ( ( 1.0 - x ) * ( 1.0 - x ) / ( 2.0 * a * ( 1.0 - a ) ) )
		);
		float threshold = ( x < ( 1.0 - a ) )
			? ( ( x < a ) ? cases.x : cases.y )
			: cases.z;
		return clamp( threshold , 1.0e-6, 1.0 );
	}
#endif`,o0=`#ifdef USE_ALPHAMAP
	diffuseColor.a *= texture2D( alphaMap, vAlphaMapUv ).g;
#endif`,a0=`#ifdef USE_ALPHAMAP
	uniform sampler2D alphaMap;
#endif`,l0=`#ifdef USE_ALPHATEST
	#ifdef ALPHA_TO_COVERAGE
	diffuseColor.a = smoothstep( alphaTest, alphaTest + fwidth( diffuseColor.a ), diffuseColor.a );
	if ( diffuseColor.a == 0.0 ) discard;
	#else
	if ( diffuseColor.a < alphaTest ) discard;
	#endif
#endif`,c0=`#ifdef USE_ALPHATEST
	uniform float alphaTest;
#endif`,h0=`#ifdef USE_AOMAP
	float ambientOcclusion = ( texture2D( aoMap, vAoMapUv ).r - 1.0 ) * aoMapIntensity + 1.0;
	reflectedLight.indirectDiffuse *= ambientOcclusion;
	#if defined( USE_CLEARCOAT ) 
		clearcoatSpecularIndirect *= ambientOcclusion;
	#endif
	#if defined( USE_SHEEN ) 
		sheenSpecularIndirect *= ambientOcclusion;
	#endif
	#if defined( USE_ENVMAP ) && defined( STANDARD )
		float dotNV = saturate( dot( geometryNormal, geometryViewDir ) );
		reflectedLight.indirectSpecular *= computeSpecularOcclusion( dotNV, ambientOcclusion, material.roughness );
	#endif
#endif`,u0=`#ifdef USE_AOMAP
	uniform sampler2D aoMap;
	uniform float aoMapIntensity;
#endif`,f0=`#ifdef USE_BATCHING
	#if ! defined( GL_ANGLE_multi_draw )
	#define gl_DrawID _gl_DrawID
	uniform int _gl_DrawID;
	#endif
	uniform highp sampler2D batchingTexture;
	uniform highp usampler2D batchingIdTexture;
	mat4 getBatchingMatrix( const in float i ) {
		int size = textureSize( batchingTexture, 0 ).x;
		int j = int( i ) * 4;
		int x = j % size;
		int y = j / size;
		vec4 v1 = texelFetch( batchingTexture, ivec2( x, y ), 0 );
		vec4 v2 = texelFetch( batchingTexture, ivec2( x + 1, y ), 0 );
		vec4 v3 = texelFetch( batchingTexture, ivec2( x + 2, y ), 0 );
		vec4 v4 = texelFetch( batchingTexture, ivec2( x + 3, y ), 0 );
		return mat4( v1, v2, v3, v4 );
	}
	float getIndirectIndex( const in int i ) {
		int size = textureSize( batchingIdTexture, 0 ).x;
		int x = i % size;
		int y = i / size;
		return float( texelFetch( batchingIdTexture, ivec2( x, y ), 0 ).r );
	}
#endif
#ifdef USE_BATCHING_COLOR
	uniform sampler2D batchingColorTexture;
	vec3 getBatchingColor( const in float i ) {
		int size = textureSize( batchingColorTexture, 0 ).x;
		int j = int( i );
		int x = j % size;
		int y = j / size;
		return texelFetch( batchingColorTexture, ivec2( x, y ), 0 ).rgb;
	}
#endif`,d0=`#ifdef USE_BATCHING
	mat4 batchingMatrix = getBatchingMatrix( getIndirectIndex( gl_DrawID ) );
#endif`,p0=`vec3 transformed = vec3( position );
#ifdef USE_ALPHAHASH
	vPosition = vec3( position );
#endif`,m0=`vec3 objectNormal = vec3( normal );
#ifdef USE_TANGENT
	vec3 objectTangent = vec3( tangent.xyz );
#endif`,g0=`float G_BlinnPhong_Implicit( ) {
	return 0.25;
}
float D_BlinnPhong( const in float shininess, const in float dotNH ) {
	return RECIPROCAL_PI * ( shininess * 0.5 + 1.0 ) * pow( dotNH, shininess );
}
vec3 BRDF_BlinnPhong( const in vec3 lightDir, const in vec3 viewDir, const in vec3 normal, const in vec3 specularColor, const in float shininess ) {
	vec3 halfDir = normalize( lightDir + viewDir );
	float dotNH = saturate( dot( normal, halfDir ) );
	float dotVH = saturate( dot( viewDir, halfDir ) );
	vec3 F = F_Schlick( specularColor, 1.0, dotVH );
	float G = G_BlinnPhong_Implicit( );
	float D = D_BlinnPhong( shininess, dotNH );
	return F * ( G * D );
} // validated`,_0=`#ifdef USE_IRIDESCENCE
	const mat3 XYZ_TO_REC709 = mat3(
		 3.2404542, -0.9692660,  0.0556434,
		-1.5371385,  1.8760108, -0.2040259,
		-0.4985314,  0.0415560,  1.0572252
	);
	vec3 Fresnel0ToIor( vec3 fresnel0 ) {
		vec3 sqrtF0 = sqrt( fresnel0 );
		return ( vec3( 1.0 ) + sqrtF0 ) / ( vec3( 1.0 ) - sqrtF0 );
	}
	vec3 IorToFresnel0( vec3 transmittedIor, float incidentIor ) {
		return pow2( ( transmittedIor - vec3( incidentIor ) ) / ( transmittedIor + vec3( incidentIor ) ) );
	}
	float IorToFresnel0( float transmittedIor, float incidentIor ) {
		return pow2( ( transmittedIor - incidentIor ) / ( transmittedIor + incidentIor ));
	}
	vec3 evalSensitivity( float OPD, vec3 shift ) {
		float phase = 2.0 * PI * OPD * 1.0e-9;
		vec3 val = vec3( 5.4856e-13, 4.4201e-13, 5.2481e-13 );
		vec3 pos = vec3( 1.6810e+06, 1.7953e+06, 2.2084e+06 );
		vec3 var = vec3( 4.3278e+09, 9.3046e+09, 6.6121e+09 );
		vec3 xyz = val * sqrt( 2.0 * PI * var ) * cos( pos * phase + shift ) * exp( - pow2( phase ) * var );
		xyz.x += 9.7470e-14 * sqrt( 2.0 * PI * 4.5282e+09 ) * cos( 2.2399e+06 * phase + shift[ 0 ] ) * exp( - 4.5282e+09 * pow2( phase ) );
		xyz /= 1.0685e-7;
		vec3 rgb = XYZ_TO_REC709 * xyz;
		return rgb;
	}
	vec3 evalIridescence( float outsideIOR, float eta2, float cosTheta1, float thinFilmThickness, vec3 baseF0 ) {
		vec3 I;
		float iridescenceIOR = mix( outsideIOR, eta2, smoothstep( 0.0, 0.03, thinFilmThickness ) );
		float sinTheta2Sq = pow2( outsideIOR / iridescenceIOR ) * ( 1.0 - pow2( cosTheta1 ) );
		float cosTheta2Sq = 1.0 - sinTheta2Sq;
		if ( cosTheta2Sq < 0.0 ) {
			return vec3( 1.0 );
		}
		float cosTheta2 = sqrt( cosTheta2Sq );
		float R0 = IorToFresnel0( iridescenceIOR, outsideIOR );
		float R12 = F_Schlick( R0, 1.0, cosTheta1 );
		float T121 = 1.0 - R12;
		float phi12 = 0.0;
		if ( iridescenceIOR < outsideIOR ) phi12 = PI;
		float phi21 = PI - phi12;
		vec3 baseIOR = Fresnel0ToIor( clamp( baseF0, 0.0, 0.9999 ) );		vec3 R1 = IorToFresnel0( baseIOR, iridescenceIOR );
		vec3 R23 = F_Schlick( R1, 1.0, cosTheta2 );
		vec3 phi23 = vec3( 0.0 );
		if ( baseIOR[ 0 ] < iridescenceIOR ) phi23[ 0 ] = PI;
		if ( baseIOR[ 1 ] < iridescenceIOR ) phi23[ 1 ] = PI;
		if ( baseIOR[ 2 ] < iridescenceIOR ) phi23[ 2 ] = PI;
		float OPD = 2.0 * iridescenceIOR * thinFilmThickness * cosTheta2;
		vec3 phi = vec3( phi21 ) + phi23;
		vec3 R123 = clamp( R12 * R23, 1e-5, 0.9999 );
		vec3 r123 = sqrt( R123 );
		vec3 Rs = pow2( T121 ) * R23 / ( vec3( 1.0 ) - R123 );
		vec3 C0 = R12 + Rs;
		I = C0;
		vec3 Cm = Rs - T121;
		for ( int m = 1; m <= 2; ++ m ) {
			Cm *= r123;
			vec3 Sm = 2.0 * evalSensitivity( float( m ) * OPD, float( m ) * phi );
			I += Cm * Sm;
		}
		return max( I, vec3( 0.0 ) );
	}
#endif`,x0=`#ifdef USE_BUMPMAP
	uniform sampler2D bumpMap;
	uniform float bumpScale;
	vec2 dHdxy_fwd() {
		vec2 dSTdx = dFdx( vBumpMapUv );
		vec2 dSTdy = dFdy( vBumpMapUv );
		float Hll = bumpScale * texture2D( bumpMap, vBumpMapUv ).x;
		float dBx = bumpScale * texture2D( bumpMap, vBumpMapUv + dSTdx ).x - Hll;
		float dBy = bumpScale * texture2D( bumpMap, vBumpMapUv + dSTdy ).x - Hll;
		return vec2( dBx, dBy );
	}
	vec3 perturbNormalArb( vec3 surf_pos, vec3 surf_norm, vec2 dHdxy, float faceDirection ) {
		vec3 vSigmaX = normalize( dFdx( surf_pos.xyz ) );
		vec3 vSigmaY = normalize( dFdy( surf_pos.xyz ) );
		vec3 vN = surf_norm;
		vec3 R1 = cross( vSigmaY, vN );
		vec3 R2 = cross( vN, vSigmaX );
		float fDet = dot( vSigmaX, R1 ) * faceDirection;
		vec3 vGrad = sign( fDet ) * ( dHdxy.x * R1 + dHdxy.y * R2 );
		return normalize( abs( fDet ) * surf_norm - vGrad );
	}
#endif`,v0=`#if NUM_CLIPPING_PLANES > 0
	vec4 plane;
	#ifdef ALPHA_TO_COVERAGE
		float distanceToPlane, distanceGradient;
		float clipOpacity = 1.0;
		#pragma unroll_loop_start
		for ( int i = 0; i < UNION_CLIPPING_PLANES; i ++ ) {
			plane = clippingPlanes[ i ];
			distanceToPlane = - dot( vClipPosition, plane.xyz ) + plane.w;
			distanceGradient = fwidth( distanceToPlane ) / 2.0;
			clipOpacity *= smoothstep( - distanceGradient, distanceGradient, distanceToPlane );
			if ( clipOpacity == 0.0 ) discard;
		}
		#pragma unroll_loop_end
		#if UNION_CLIPPING_PLANES < NUM_CLIPPING_PLANES
			float unionClipOpacity = 1.0;
			#pragma unroll_loop_start
			for ( int i = UNION_CLIPPING_PLANES; i < NUM_CLIPPING_PLANES; i ++ ) {
				plane = clippingPlanes[ i ];
				distanceToPlane = - dot( vClipPosition, plane.xyz ) + plane.w;
				distanceGradient = fwidth( distanceToPlane ) / 2.0;
				unionClipOpacity *= 1.0 - smoothstep( - distanceGradient, distanceGradient, distanceToPlane );
			}
			#pragma unroll_loop_end
			clipOpacity *= 1.0 - unionClipOpacity;
		#endif
		diffuseColor.a *= clipOpacity;
		if ( diffuseColor.a == 0.0 ) discard;
	#else
		#pragma unroll_loop_start
		for ( int i = 0; i < UNION_CLIPPING_PLANES; i ++ ) {
			plane = clippingPlanes[ i ];
			if ( dot( vClipPosition, plane.xyz ) > plane.w ) discard;
		}
		#pragma unroll_loop_end
		#if UNION_CLIPPING_PLANES < NUM_CLIPPING_PLANES
			bool clipped = true;
			#pragma unroll_loop_start
			for ( int i = UNION_CLIPPING_PLANES; i < NUM_CLIPPING_PLANES; i ++ ) {
				plane = clippingPlanes[ i ];
				clipped = ( dot( vClipPosition, plane.xyz ) > plane.w ) && clipped;
			}
			#pragma unroll_loop_end
			if ( clipped ) discard;
		#endif
	#endif
#endif`,y0=`#if NUM_CLIPPING_PLANES > 0
	varying vec3 vClipPosition;
	uniform vec4 clippingPlanes[ NUM_CLIPPING_PLANES ];
#endif`,M0=`#if NUM_CLIPPING_PLANES > 0
	varying vec3 vClipPosition;
#endif`,S0=`#if NUM_CLIPPING_PLANES > 0
	vClipPosition = - mvPosition.xyz;
#endif`,b0=`#if defined( USE_COLOR_ALPHA )
	diffuseColor *= vColor;
#elif defined( USE_COLOR )
	diffuseColor.rgb *= vColor;
#endif`,w0=`#if defined( USE_COLOR_ALPHA )
	varying vec4 vColor;
#elif defined( USE_COLOR )
	varying vec3 vColor;
#endif`,E0=`#if defined( USE_COLOR_ALPHA )
	varying vec4 vColor;
#elif defined( USE_COLOR ) || defined( USE_INSTANCING_COLOR ) || defined( USE_BATCHING_COLOR )
	varying vec3 vColor;
#endif`,T0=`#if defined( USE_COLOR_ALPHA )
	vColor = vec4( 1.0 );
#elif defined( USE_COLOR ) || defined( USE_INSTANCING_COLOR ) || defined( USE_BATCHING_COLOR )
	vColor = vec3( 1.0 );
#endif
#ifdef USE_COLOR
	vColor *= color;
#endif
#ifdef USE_INSTANCING_COLOR
	vColor.xyz *= instanceColor.xyz;
#endif
#ifdef USE_BATCHING_COLOR
	vec3 batchingColor = getBatchingColor( getIndirectIndex( gl_DrawID ) );
	vColor.xyz *= batchingColor.xyz;
#endif`,A0=`#define PI 3.141592653589793
#define PI2 6.283185307179586
#define PI_HALF 1.5707963267948966
#define RECIPROCAL_PI 0.3183098861837907
#define RECIPROCAL_PI2 0.15915494309189535
#define EPSILON 1e-6
#ifndef saturate
#define saturate( a ) clamp( a, 0.0, 1.0 )
#endif
#define whiteComplement( a ) ( 1.0 - saturate( a ) )
float pow2( const in float x ) { return x*x; }
vec3 pow2( const in vec3 x ) { return x*x; }
float pow3( const in float x ) { return x*x*x; }
float pow4( const in float x ) { float x2 = x*x; return x2*x2; }
float max3( const in vec3 v ) { return max( max( v.x, v.y ), v.z ); }
float average( const in vec3 v ) { return dot( v, vec3( 0.3333333 ) ); }
highp float rand( const in vec2 uv ) {
	const highp float a = 12.9898, b = 78.233, c = 43758.5453;
	highp float dt = dot( uv.xy, vec2( a,b ) ), sn = mod( dt, PI );
	return fract( sin( sn ) * c );
}
#ifdef HIGH_PRECISION
	float precisionSafeLength( vec3 v ) { return length( v ); }
#else
	float precisionSafeLength( vec3 v ) {
		float maxComponent = max3( abs( v ) );
		return length( v / maxComponent ) * maxComponent;
	}
#endif
struct IncidentLight {
	vec3 color;
	vec3 direction;
	bool visible;
};
struct ReflectedLight {
	vec3 directDiffuse;
	vec3 directSpecular;
	vec3 indirectDiffuse;
	vec3 indirectSpecular;
};
#ifdef USE_ALPHAHASH
	varying vec3 vPosition;
#endif
vec3 transformDirection( in vec3 dir, in mat4 matrix ) {
	return normalize( ( matrix * vec4( dir, 0.0 ) ).xyz );
}
vec3 inverseTransformDirection( in vec3 dir, in mat4 matrix ) {
	return normalize( ( vec4( dir, 0.0 ) * matrix ).xyz );
}
mat3 transposeMat3( const in mat3 m ) {
	mat3 tmp;
	tmp[ 0 ] = vec3( m[ 0 ].x, m[ 1 ].x, m[ 2 ].x );
	tmp[ 1 ] = vec3( m[ 0 ].y, m[ 1 ].y, m[ 2 ].y );
	tmp[ 2 ] = vec3( m[ 0 ].z, m[ 1 ].z, m[ 2 ].z );
	return tmp;
}
bool isPerspectiveMatrix( mat4 m ) {
	return m[ 2 ][ 3 ] == - 1.0;
}
vec2 equirectUv( in vec3 dir ) {
	float u = atan( dir.z, dir.x ) * RECIPROCAL_PI2 + 0.5;
	float v = asin( clamp( dir.y, - 1.0, 1.0 ) ) * RECIPROCAL_PI + 0.5;
	return vec2( u, v );
}
vec3 BRDF_Lambert( const in vec3 diffuseColor ) {
	return RECIPROCAL_PI * diffuseColor;
}
vec3 F_Schlick( const in vec3 f0, const in float f90, const in float dotVH ) {
	float fresnel = exp2( ( - 5.55473 * dotVH - 6.98316 ) * dotVH );
	return f0 * ( 1.0 - fresnel ) + ( f90 * fresnel );
}
float F_Schlick( const in float f0, const in float f90, const in float dotVH ) {
	float fresnel = exp2( ( - 5.55473 * dotVH - 6.98316 ) * dotVH );
	return f0 * ( 1.0 - fresnel ) + ( f90 * fresnel );
} // validated`,C0=`#ifdef ENVMAP_TYPE_CUBE_UV
	#define cubeUV_minMipLevel 4.0
	#define cubeUV_minTileSize 16.0
	float getFace( vec3 direction ) {
		vec3 absDirection = abs( direction );
		float face = - 1.0;
		if ( absDirection.x > absDirection.z ) {
			if ( absDirection.x > absDirection.y )
				face = direction.x > 0.0 ? 0.0 : 3.0;
			else
				face = direction.y > 0.0 ? 1.0 : 4.0;
		} else {
			if ( absDirection.z > absDirection.y )
				face = direction.z > 0.0 ? 2.0 : 5.0;
			else
				face = direction.y > 0.0 ? 1.0 : 4.0;
		}
		return face;
	}
	vec2 getUV( vec3 direction, float face ) {
		vec2 uv;
		if ( face == 0.0 ) {
			uv = vec2( direction.z, direction.y ) / abs( direction.x );
		} else if ( face == 1.0 ) {
			uv = vec2( - direction.x, - direction.z ) / abs( direction.y );
		} else if ( face == 2.0 ) {
			uv = vec2( - direction.x, direction.y ) / abs( direction.z );
		} else if ( face == 3.0 ) {
			uv = vec2( - direction.z, direction.y ) / abs( direction.x );
		} else if ( face == 4.0 ) {
			uv = vec2( - direction.x, direction.z ) / abs( direction.y );
		} else {
			uv = vec2( direction.x, direction.y ) / abs( direction.z );
		}
		return 0.5 * ( uv + 1.0 );
	}
	vec3 bilinearCubeUV( sampler2D envMap, vec3 direction, float mipInt ) {
		float face = getFace( direction );
		float filterInt = max( cubeUV_minMipLevel - mipInt, 0.0 );
		mipInt = max( mipInt, cubeUV_minMipLevel );
		float faceSize = exp2( mipInt );
		highp vec2 uv = getUV( direction, face ) * ( faceSize - 2.0 ) + 1.0;
		if ( face > 2.0 ) {
			uv.y += faceSize;
			face -= 3.0;
		}
		uv.x += face * faceSize;
		uv.x += filterInt * 3.0 * cubeUV_minTileSize;
		uv.y += 4.0 * ( exp2( CUBEUV_MAX_MIP ) - faceSize );
		uv.x *= CUBEUV_TEXEL_WIDTH;
		uv.y *= CUBEUV_TEXEL_HEIGHT;
		#ifdef texture2DGradEXT
			return texture2DGradEXT( envMap, uv, vec2( 0.0 ), vec2( 0.0 ) ).rgb;
		#else
			return texture2D( envMap, uv ).rgb;
		#endif
	}
	#define cubeUV_r0 1.0
	#define cubeUV_m0 - 2.0
	#define cubeUV_r1 0.8
	#define cubeUV_m1 - 1.0
	#define cubeUV_r4 0.4
	#define cubeUV_m4 2.0
	#define cubeUV_r5 0.305
	#define cubeUV_m5 3.0
	#define cubeUV_r6 0.21
	#define cubeUV_m6 4.0
	float roughnessToMip( float roughness ) {
		float mip = 0.0;
		if ( roughness >= cubeUV_r1 ) {
			mip = ( cubeUV_r0 - roughness ) * ( cubeUV_m1 - cubeUV_m0 ) / ( cubeUV_r0 - cubeUV_r1 ) + cubeUV_m0;
		} else if ( roughness >= cubeUV_r4 ) {
			mip = ( cubeUV_r1 - roughness ) * ( cubeUV_m4 - cubeUV_m1 ) / ( cubeUV_r1 - cubeUV_r4 ) + cubeUV_m1;
		} else if ( roughness >= cubeUV_r5 ) {
			mip = ( cubeUV_r4 - roughness ) * ( cubeUV_m5 - cubeUV_m4 ) / ( cubeUV_r4 - cubeUV_r5 ) + cubeUV_m4;
		} else if ( roughness >= cubeUV_r6 ) {
			mip = ( cubeUV_r5 - roughness ) * ( cubeUV_m6 - cubeUV_m5 ) / ( cubeUV_r5 - cubeUV_r6 ) + cubeUV_m5;
		} else {
			mip = - 2.0 * log2( 1.16 * roughness );		}
		return mip;
	}
	vec4 textureCubeUV( sampler2D envMap, vec3 sampleDir, float roughness ) {
		float mip = clamp( roughnessToMip( roughness ), cubeUV_m0, CUBEUV_MAX_MIP );
		float mipF = fract( mip );
		float mipInt = floor( mip );
		vec3 color0 = bilinearCubeUV( envMap, sampleDir, mipInt );
		if ( mipF == 0.0 ) {
			return vec4( color0, 1.0 );
		} else {
			vec3 color1 = bilinearCubeUV( envMap, sampleDir, mipInt + 1.0 );
			return vec4( mix( color0, color1, mipF ), 1.0 );
		}
	}
#endif`,R0=`vec3 transformedNormal = objectNormal;
#ifdef USE_TANGENT
	vec3 transformedTangent = objectTangent;
#endif
#ifdef USE_BATCHING
	mat3 bm = mat3( batchingMatrix );
	transformedNormal /= vec3( dot( bm[ 0 ], bm[ 0 ] ), dot( bm[ 1 ], bm[ 1 ] ), dot( bm[ 2 ], bm[ 2 ] ) );
	transformedNormal = bm * transformedNormal;
	#ifdef USE_TANGENT
		transformedTangent = bm * transformedTangent;
	#endif
#endif
#ifdef USE_INSTANCING
	mat3 im = mat3( instanceMatrix );
	transformedNormal /= vec3( dot( im[ 0 ], im[ 0 ] ), dot( im[ 1 ], im[ 1 ] ), dot( im[ 2 ], im[ 2 ] ) );
	transformedNormal = im * transformedNormal;
	#ifdef USE_TANGENT
		transformedTangent = im * transformedTangent;
	#endif
#endif
transformedNormal = normalMatrix * transformedNormal;
#ifdef FLIP_SIDED
	transformedNormal = - transformedNormal;
#endif
#ifdef USE_TANGENT
	transformedTangent = ( modelViewMatrix * vec4( transformedTangent, 0.0 ) ).xyz;
	#ifdef FLIP_SIDED
		transformedTangent = - transformedTangent;
	#endif
#endif`,P0=`#ifdef USE_DISPLACEMENTMAP
	uniform sampler2D displacementMap;
	uniform float displacementScale;
	uniform float displacementBias;
#endif`,I0=`#ifdef USE_DISPLACEMENTMAP
	transformed += normalize( objectNormal ) * ( texture2D( displacementMap, vDisplacementMapUv ).x * displacementScale + displacementBias );
#endif`,L0=`#ifdef USE_EMISSIVEMAP
	vec4 emissiveColor = texture2D( emissiveMap, vEmissiveMapUv );
	#ifdef DECODE_VIDEO_TEXTURE_EMISSIVE
		emissiveColor = sRGBTransferEOTF( emissiveColor );
	#endif
	totalEmissiveRadiance *= emissiveColor.rgb;
#endif`,D0=`#ifdef USE_EMISSIVEMAP
	uniform sampler2D emissiveMap;
#endif`,N0="gl_FragColor = linearToOutputTexel( gl_FragColor );",U0=`vec4 LinearTransferOETF( in vec4 value ) {
	return value;
}
vec4 sRGBTransferEOTF( in vec4 value ) {
	return vec4( mix( pow( value.rgb * 0.9478672986 + vec3( 0.0521327014 ), vec3( 2.4 ) ), value.rgb * 0.0773993808, vec3( lessThanEqual( value.rgb, vec3( 0.04045 ) ) ) ), value.a );
}
vec4 sRGBTransferOETF( in vec4 value ) {
	return vec4( mix( pow( value.rgb, vec3( 0.41666 ) ) * 1.055 - vec3( 0.055 ), value.rgb * 12.92, vec3( lessThanEqual( value.rgb, vec3( 0.0031308 ) ) ) ), value.a );
}`,O0=`#ifdef USE_ENVMAP
	#ifdef ENV_WORLDPOS
		vec3 cameraToFrag;
		if ( isOrthographic ) {
			cameraToFrag = normalize( vec3( - viewMatrix[ 0 ][ 2 ], - viewMatrix[ 1 ][ 2 ], - viewMatrix[ 2 ][ 2 ] ) );
		} else {
			cameraToFrag = normalize( vWorldPosition - cameraPosition );
		}
		vec3 worldNormal = inverseTransformDirection( normal, viewMatrix );
		#ifdef ENVMAP_MODE_REFLECTION
			vec3 reflectVec = reflect( cameraToFrag, worldNormal );
		#else
			vec3 reflectVec = refract( cameraToFrag, worldNormal, refractionRatio );
		#endif
	#else
		vec3 reflectVec = vReflect;
	#endif
	#ifdef ENVMAP_TYPE_CUBE
		vec4 envColor = textureCube( envMap, envMapRotation * vec3( flipEnvMap * reflectVec.x, reflectVec.yz ) );
	#else
		vec4 envColor = vec4( 0.0 );
	#endif
	#ifdef ENVMAP_BLENDING_MULTIPLY
		outgoingLight = mix( outgoingLight, outgoingLight * envColor.xyz, specularStrength * reflectivity );
	#elif defined( ENVMAP_BLENDING_MIX )
		outgoingLight = mix( outgoingLight, envColor.xyz, specularStrength * reflectivity );
	#elif defined( ENVMAP_BLENDING_ADD )
		outgoingLight += envColor.xyz * specularStrength * reflectivity;
	#endif
#endif`,F0=`#ifdef USE_ENVMAP
	uniform float envMapIntensity;
	uniform float flipEnvMap;
	uniform mat3 envMapRotation;
	#ifdef ENVMAP_TYPE_CUBE
		uniform samplerCube envMap;
	#else
		uniform sampler2D envMap;
	#endif
	
#endif`,B0=`#ifdef USE_ENVMAP
	uniform float reflectivity;
	#if defined( USE_BUMPMAP ) || defined( USE_NORMALMAP ) || defined( PHONG ) || defined( LAMBERT )
		#define ENV_WORLDPOS
	#endif
	#ifdef ENV_WORLDPOS
		varying vec3 vWorldPosition;
		uniform float refractionRatio;
	#else
		varying vec3 vReflect;
	#endif
#endif`,k0=`#ifdef USE_ENVMAP
	#if defined( USE_BUMPMAP ) || defined( USE_NORMALMAP ) || defined( PHONG ) || defined( LAMBERT )
		#define ENV_WORLDPOS
	#endif
	#ifdef ENV_WORLDPOS
		
		varying vec3 vWorldPosition;
	#else
		varying vec3 vReflect;
		uniform float refractionRatio;
	#endif
#endif`,z0=`#ifdef USE_ENVMAP
	#ifdef ENV_WORLDPOS
		vWorldPosition = worldPosition.xyz;
	#else
		vec3 cameraToVertex;
		if ( isOrthographic ) {
			cameraToVertex = normalize( vec3( - viewMatrix[ 0 ][ 2 ], - viewMatrix[ 1 ][ 2 ], - viewMatrix[ 2 ][ 2 ] ) );
		} else {
			cameraToVertex = normalize( worldPosition.xyz - cameraPosition );
		}
		vec3 worldNormal = inverseTransformDirection( transformedNormal, viewMatrix );
		#ifdef ENVMAP_MODE_REFLECTION
			vReflect = reflect( cameraToVertex, worldNormal );
		#else
			vReflect = refract( cameraToVertex, worldNormal, refractionRatio );
		#endif
	#endif
#endif`,V0=`#ifdef USE_FOG
	vFogDepth = - mvPosition.z;
#endif`,H0=`#ifdef USE_FOG
	varying float vFogDepth;
#endif`,G0=`#ifdef USE_FOG
	#ifdef FOG_EXP2
		float fogFactor = 1.0 - exp( - fogDensity * fogDensity * vFogDepth * vFogDepth );
	#else
		float fogFactor = smoothstep( fogNear, fogFar, vFogDepth );
	#endif
	gl_FragColor.rgb = mix( gl_FragColor.rgb, fogColor, fogFactor );
#endif`,W0=`#ifdef USE_FOG
	uniform vec3 fogColor;
	varying float vFogDepth;
	#ifdef FOG_EXP2
		uniform float fogDensity;
	#else
		uniform float fogNear;
		uniform float fogFar;
	#endif
#endif`,X0=`#ifdef USE_GRADIENTMAP
	uniform sampler2D gradientMap;
#endif
vec3 getGradientIrradiance( vec3 normal, vec3 lightDirection ) {
	float dotNL = dot( normal, lightDirection );
	vec2 coord = vec2( dotNL * 0.5 + 0.5, 0.0 );
	#ifdef USE_GRADIENTMAP
		return vec3( texture2D( gradientMap, coord ).r );
	#else
		vec2 fw = fwidth( coord ) * 0.5;
		return mix( vec3( 0.7 ), vec3( 1.0 ), smoothstep( 0.7 - fw.x, 0.7 + fw.x, coord.x ) );
	#endif
}`,Y0=`#ifdef USE_LIGHTMAP
	uniform sampler2D lightMap;
	uniform float lightMapIntensity;
#endif`,q0=`LambertMaterial material;
material.diffuseColor = diffuseColor.rgb;
material.specularStrength = specularStrength;`,$0=`varying vec3 vViewPosition;
struct LambertMaterial {
	vec3 diffuseColor;
	float specularStrength;
};
void RE_Direct_Lambert( const in IncidentLight directLight, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in LambertMaterial material, inout ReflectedLight reflectedLight ) {
	float dotNL = saturate( dot( geometryNormal, directLight.direction ) );
	vec3 irradiance = dotNL * directLight.color;
	reflectedLight.directDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
void RE_IndirectDiffuse_Lambert( const in vec3 irradiance, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in LambertMaterial material, inout ReflectedLight reflectedLight ) {
	reflectedLight.indirectDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
#define RE_Direct				RE_Direct_Lambert
#define RE_IndirectDiffuse		RE_IndirectDiffuse_Lambert`,Z0=`uniform bool receiveShadow;
uniform vec3 ambientLightColor;
#if defined( USE_LIGHT_PROBES )
	uniform vec3 lightProbe[ 9 ];
#endif
vec3 shGetIrradianceAt( in vec3 normal, in vec3 shCoefficients[ 9 ] ) {
	float x = normal.x, y = normal.y, z = normal.z;
	vec3 result = shCoefficients[ 0 ] * 0.886227;
	result += shCoefficients[ 1 ] * 2.0 * 0.511664 * y;
	result += shCoefficients[ 2 ] * 2.0 * 0.511664 * z;
	result += shCoefficients[ 3 ] * 2.0 * 0.511664 * x;
	result += shCoefficients[ 4 ] * 2.0 * 0.429043 * x * y;
	result += shCoefficients[ 5 ] * 2.0 * 0.429043 * y * z;
	result += shCoefficients[ 6 ] * ( 0.743125 * z * z - 0.247708 );
	result += shCoefficients[ 7 ] * 2.0 * 0.429043 * x * z;
	result += shCoefficients[ 8 ] * 0.429043 * ( x * x - y * y );
	return result;
}
vec3 getLightProbeIrradiance( const in vec3 lightProbe[ 9 ], const in vec3 normal ) {
	vec3 worldNormal = inverseTransformDirection( normal, viewMatrix );
	vec3 irradiance = shGetIrradianceAt( worldNormal, lightProbe );
	return irradiance;
}
vec3 getAmbientLightIrradiance( const in vec3 ambientLightColor ) {
	vec3 irradiance = ambientLightColor;
	return irradiance;
}
float getDistanceAttenuation( const in float lightDistance, const in float cutoffDistance, const in float decayExponent ) {
	float distanceFalloff = 1.0 / max( pow( lightDistance, decayExponent ), 0.01 );
	if ( cutoffDistance > 0.0 ) {
		distanceFalloff *= pow2( saturate( 1.0 - pow4( lightDistance / cutoffDistance ) ) );
	}
	return distanceFalloff;
}
float getSpotAttenuation( const in float coneCosine, const in float penumbraCosine, const in float angleCosine ) {
	return smoothstep( coneCosine, penumbraCosine, angleCosine );
}
#if NUM_DIR_LIGHTS > 0
	struct DirectionalLight {
		vec3 direction;
		vec3 color;
	};
	uniform DirectionalLight directionalLights[ NUM_DIR_LIGHTS ];
	void getDirectionalLightInfo( const in DirectionalLight directionalLight, out IncidentLight light ) {
		light.color = directionalLight.color;
		light.direction = directionalLight.direction;
		light.visible = true;
	}
#endif
#if NUM_POINT_LIGHTS > 0
	struct PointLight {
		vec3 position;
		vec3 color;
		float distance;
		float decay;
	};
	uniform PointLight pointLights[ NUM_POINT_LIGHTS ];
	void getPointLightInfo( const in PointLight pointLight, const in vec3 geometryPosition, out IncidentLight light ) {
		vec3 lVector = pointLight.position - geometryPosition;
		light.direction = normalize( lVector );
		float lightDistance = length( lVector );
		light.color = pointLight.color;
		light.color *= getDistanceAttenuation( lightDistance, pointLight.distance, pointLight.decay );
		light.visible = ( light.color != vec3( 0.0 ) );
	}
#endif
#if NUM_SPOT_LIGHTS > 0
	struct SpotLight {
		vec3 position;
		vec3 direction;
		vec3 color;
		float distance;
		float decay;
		float coneCos;
		float penumbraCos;
	};
	uniform SpotLight spotLights[ NUM_SPOT_LIGHTS ];
	void getSpotLightInfo( const in SpotLight spotLight, const in vec3 geometryPosition, out IncidentLight light ) {
		vec3 lVector = spotLight.position - geometryPosition;
		light.direction = normalize( lVector );
		float angleCos = dot( light.direction, spotLight.direction );
		float spotAttenuation = getSpotAttenuation( spotLight.coneCos, spotLight.penumbraCos, angleCos );
		if ( spotAttenuation > 0.0 ) {
			float lightDistance = length( lVector );
			light.color = spotLight.color * spotAttenuation;
			light.color *= getDistanceAttenuation( lightDistance, spotLight.distance, spotLight.decay );
			light.visible = ( light.color != vec3( 0.0 ) );
		} else {
			light.color = vec3( 0.0 );
			light.visible = false;
		}
	}
#endif
#if NUM_RECT_AREA_LIGHTS > 0
	struct RectAreaLight {
		vec3 color;
		vec3 position;
		vec3 halfWidth;
		vec3 halfHeight;
	};
	uniform sampler2D ltc_1;	uniform sampler2D ltc_2;
	uniform RectAreaLight rectAreaLights[ NUM_RECT_AREA_LIGHTS ];
#endif
#if NUM_HEMI_LIGHTS > 0
	struct HemisphereLight {
		vec3 direction;
		vec3 skyColor;
		vec3 groundColor;
	};
	uniform HemisphereLight hemisphereLights[ NUM_HEMI_LIGHTS ];
	vec3 getHemisphereLightIrradiance( const in HemisphereLight hemiLight, const in vec3 normal ) {
		float dotNL = dot( normal, hemiLight.direction );
		float hemiDiffuseWeight = 0.5 * dotNL + 0.5;
		vec3 irradiance = mix( hemiLight.groundColor, hemiLight.skyColor, hemiDiffuseWeight );
		return irradiance;
	}
#endif`,J0=`#ifdef USE_ENVMAP
	vec3 getIBLIrradiance( const in vec3 normal ) {
		#ifdef ENVMAP_TYPE_CUBE_UV
			vec3 worldNormal = inverseTransformDirection( normal, viewMatrix );
			vec4 envMapColor = textureCubeUV( envMap, envMapRotation * worldNormal, 1.0 );
			return PI * envMapColor.rgb * envMapIntensity;
		#else
			return vec3( 0.0 );
		#endif
	}
	vec3 getIBLRadiance( const in vec3 viewDir, const in vec3 normal, const in float roughness ) {
		#ifdef ENVMAP_TYPE_CUBE_UV
			vec3 reflectVec = reflect( - viewDir, normal );
			reflectVec = normalize( mix( reflectVec, normal, roughness * roughness) );
			reflectVec = inverseTransformDirection( reflectVec, viewMatrix );
			vec4 envMapColor = textureCubeUV( envMap, envMapRotation * reflectVec, roughness );
			return envMapColor.rgb * envMapIntensity;
		#else
			return vec3( 0.0 );
		#endif
	}
	#ifdef USE_ANISOTROPY
		vec3 getIBLAnisotropyRadiance( const in vec3 viewDir, const in vec3 normal, const in float roughness, const in vec3 bitangent, const in float anisotropy ) {
			#ifdef ENVMAP_TYPE_CUBE_UV
				vec3 bentNormal = cross( bitangent, viewDir );
				bentNormal = normalize( cross( bentNormal, bitangent ) );
				bentNormal = normalize( mix( bentNormal, normal, pow2( pow2( 1.0 - anisotropy * ( 1.0 - roughness ) ) ) ) );
				return getIBLRadiance( viewDir, bentNormal, roughness );
			#else
				return vec3( 0.0 );
			#endif
		}
	#endif
#endif`,K0=`ToonMaterial material;
material.diffuseColor = diffuseColor.rgb;`,j0=`varying vec3 vViewPosition;
struct ToonMaterial {
	vec3 diffuseColor;
};
void RE_Direct_Toon( const in IncidentLight directLight, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in ToonMaterial material, inout ReflectedLight reflectedLight ) {
	vec3 irradiance = getGradientIrradiance( geometryNormal, directLight.direction ) * directLight.color;
	reflectedLight.directDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
void RE_IndirectDiffuse_Toon( const in vec3 irradiance, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in ToonMaterial material, inout ReflectedLight reflectedLight ) {
	reflectedLight.indirectDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
#define RE_Direct				RE_Direct_Toon
#define RE_IndirectDiffuse		RE_IndirectDiffuse_Toon`,Q0=`BlinnPhongMaterial material;
material.diffuseColor = diffuseColor.rgb;
material.specularColor = specular;
material.specularShininess = shininess;
material.specularStrength = specularStrength;`,t_=`varying vec3 vViewPosition;
struct BlinnPhongMaterial {
	vec3 diffuseColor;
	vec3 specularColor;
	float specularShininess;
	float specularStrength;
};
void RE_Direct_BlinnPhong( const in IncidentLight directLight, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in BlinnPhongMaterial material, inout ReflectedLight reflectedLight ) {
	float dotNL = saturate( dot( geometryNormal, directLight.direction ) );
	vec3 irradiance = dotNL * directLight.color;
	reflectedLight.directDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
	reflectedLight.directSpecular += irradiance * BRDF_BlinnPhong( directLight.direction, geometryViewDir, geometryNormal, material.specularColor, material.specularShininess ) * material.specularStrength;
}
void RE_IndirectDiffuse_BlinnPhong( const in vec3 irradiance, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in BlinnPhongMaterial material, inout ReflectedLight reflectedLight ) {
	reflectedLight.indirectDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
#define RE_Direct				RE_Direct_BlinnPhong
#define RE_IndirectDiffuse		RE_IndirectDiffuse_BlinnPhong`,e_=`PhysicalMaterial material;
material.diffuseColor = diffuseColor.rgb * ( 1.0 - metalnessFactor );
vec3 dxy = max( abs( dFdx( nonPerturbedNormal ) ), abs( dFdy( nonPerturbedNormal ) ) );
float geometryRoughness = max( max( dxy.x, dxy.y ), dxy.z );
material.roughness = max( roughnessFactor, 0.0525 );material.roughness += geometryRoughness;
material.roughness = min( material.roughness, 1.0 );
#ifdef IOR
	material.ior = ior;
	#ifdef USE_SPECULAR
		float specularIntensityFactor = specularIntensity;
		vec3 specularColorFactor = specularColor;
		#ifdef USE_SPECULAR_COLORMAP
			specularColorFactor *= texture2D( specularColorMap, vSpecularColorMapUv ).rgb;
		#endif
		#ifdef USE_SPECULAR_INTENSITYMAP
			specularIntensityFactor *= texture2D( specularIntensityMap, vSpecularIntensityMapUv ).a;
		#endif
		material.specularF90 = mix( specularIntensityFactor, 1.0, metalnessFactor );
	#else
		float specularIntensityFactor = 1.0;
		vec3 specularColorFactor = vec3( 1.0 );
		material.specularF90 = 1.0;
	#endif
	material.specularColor = mix( min( pow2( ( material.ior - 1.0 ) / ( material.ior + 1.0 ) ) * specularColorFactor, vec3( 1.0 ) ) * specularIntensityFactor, diffuseColor.rgb, metalnessFactor );
#else
	material.specularColor = mix( vec3( 0.04 ), diffuseColor.rgb, metalnessFactor );
	material.specularF90 = 1.0;
#endif
#ifdef USE_CLEARCOAT
	material.clearcoat = clearcoat;
	material.clearcoatRoughness = clearcoatRoughness;
	material.clearcoatF0 = vec3( 0.04 );
	material.clearcoatF90 = 1.0;
	#ifdef USE_CLEARCOATMAP
		material.clearcoat *= texture2D( clearcoatMap, vClearcoatMapUv ).x;
	#endif
	#ifdef USE_CLEARCOAT_ROUGHNESSMAP
		material.clearcoatRoughness *= texture2D( clearcoatRoughnessMap, vClearcoatRoughnessMapUv ).y;
	#endif
	material.clearcoat = saturate( material.clearcoat );	material.clearcoatRoughness = max( material.clearcoatRoughness, 0.0525 );
	material.clearcoatRoughness += geometryRoughness;
	material.clearcoatRoughness = min( material.clearcoatRoughness, 1.0 );
#endif
#ifdef USE_DISPERSION
	material.dispersion = dispersion;
#endif
#ifdef USE_IRIDESCENCE
	material.iridescence = iridescence;
	material.iridescenceIOR = iridescenceIOR;
	#ifdef USE_IRIDESCENCEMAP
		material.iridescence *= texture2D( iridescenceMap, vIridescenceMapUv ).r;
	#endif
	#ifdef USE_IRIDESCENCE_THICKNESSMAP
		material.iridescenceThickness = (iridescenceThicknessMaximum - iridescenceThicknessMinimum) * texture2D( iridescenceThicknessMap, vIridescenceThicknessMapUv ).g + iridescenceThicknessMinimum;
	#else
		material.iridescenceThickness = iridescenceThicknessMaximum;
	#endif
#endif
#ifdef USE_SHEEN
	material.sheenColor = sheenColor;
	#ifdef USE_SHEEN_COLORMAP
		material.sheenColor *= texture2D( sheenColorMap, vSheenColorMapUv ).rgb;
	#endif
	material.sheenRoughness = clamp( sheenRoughness, 0.07, 1.0 );
	#ifdef USE_SHEEN_ROUGHNESSMAP
		material.sheenRoughness *= texture2D( sheenRoughnessMap, vSheenRoughnessMapUv ).a;
	#endif
#endif
#ifdef USE_ANISOTROPY
	#ifdef USE_ANISOTROPYMAP
		mat2 anisotropyMat = mat2( anisotropyVector.x, anisotropyVector.y, - anisotropyVector.y, anisotropyVector.x );
		vec3 anisotropyPolar = texture2D( anisotropyMap, vAnisotropyMapUv ).rgb;
		vec2 anisotropyV = anisotropyMat * normalize( 2.0 * anisotropyPolar.rg - vec2( 1.0 ) ) * anisotropyPolar.b;
	#else
		vec2 anisotropyV = anisotropyVector;
	#endif
	material.anisotropy = length( anisotropyV );
	if( material.anisotropy == 0.0 ) {
		anisotropyV = vec2( 1.0, 0.0 );
	} else {
		anisotropyV /= material.anisotropy;
		material.anisotropy = saturate( material.anisotropy );
	}
	material.alphaT = mix( pow2( material.roughness ), 1.0, pow2( material.anisotropy ) );
	material.anisotropyT = tbn[ 0 ] * anisotropyV.x + tbn[ 1 ] * anisotropyV.y;
	material.anisotropyB = tbn[ 1 ] * anisotropyV.x - tbn[ 0 ] * anisotropyV.y;
#endif`,n_=`struct PhysicalMaterial {
	vec3 diffuseColor;
	float roughness;
	vec3 specularColor;
	float specularF90;
	float dispersion;
	#ifdef USE_CLEARCOAT
		float clearcoat;
		float clearcoatRoughness;
		vec3 clearcoatF0;
		float clearcoatF90;
	#endif
	#ifdef USE_IRIDESCENCE
		float iridescence;
		float iridescenceIOR;
		float iridescenceThickness;
		vec3 iridescenceFresnel;
		vec3 iridescenceF0;
	#endif
	#ifdef USE_SHEEN
		vec3 sheenColor;
		float sheenRoughness;
	#endif
	#ifdef IOR
		float ior;
	#endif
	#ifdef USE_TRANSMISSION
		float transmission;
		float transmissionAlpha;
		float thickness;
		float attenuationDistance;
		vec3 attenuationColor;
	#endif
	#ifdef USE_ANISOTROPY
		float anisotropy;
		float alphaT;
		vec3 anisotropyT;
		vec3 anisotropyB;
	#endif
};
vec3 clearcoatSpecularDirect = vec3( 0.0 );
vec3 clearcoatSpecularIndirect = vec3( 0.0 );
vec3 sheenSpecularDirect = vec3( 0.0 );
vec3 sheenSpecularIndirect = vec3(0.0 );
vec3 Schlick_to_F0( const in vec3 f, const in float f90, const in float dotVH ) {
    float x = clamp( 1.0 - dotVH, 0.0, 1.0 );
    float x2 = x * x;
    float x5 = clamp( x * x2 * x2, 0.0, 0.9999 );
    return ( f - vec3( f90 ) * x5 ) / ( 1.0 - x5 );
}
float V_GGX_SmithCorrelated( const in float alpha, const in float dotNL, const in float dotNV ) {
	float a2 = pow2( alpha );
	float gv = dotNL * sqrt( a2 + ( 1.0 - a2 ) * pow2( dotNV ) );
	float gl = dotNV * sqrt( a2 + ( 1.0 - a2 ) * pow2( dotNL ) );
	return 0.5 / max( gv + gl, EPSILON );
}
float D_GGX( const in float alpha, const in float dotNH ) {
	float a2 = pow2( alpha );
	float denom = pow2( dotNH ) * ( a2 - 1.0 ) + 1.0;
	return RECIPROCAL_PI * a2 / pow2( denom );
}
#ifdef USE_ANISOTROPY
	float V_GGX_SmithCorrelated_Anisotropic( const in float alphaT, const in float alphaB, const in float dotTV, const in float dotBV, const in float dotTL, const in float dotBL, const in float dotNV, const in float dotNL ) {
		float gv = dotNL * length( vec3( alphaT * dotTV, alphaB * dotBV, dotNV ) );
		float gl = dotNV * length( vec3( alphaT * dotTL, alphaB * dotBL, dotNL ) );
		float v = 0.5 / ( gv + gl );
		return saturate(v);
	}
	float D_GGX_Anisotropic( const in float alphaT, const in float alphaB, const in float dotNH, const in float dotTH, const in float dotBH ) {
		float a2 = alphaT * alphaB;
		highp vec3 v = vec3( alphaB * dotTH, alphaT * dotBH, a2 * dotNH );
		highp float v2 = dot( v, v );
		float w2 = a2 / v2;
		return RECIPROCAL_PI * a2 * pow2 ( w2 );
	}
#endif
#ifdef USE_CLEARCOAT
	vec3 BRDF_GGX_Clearcoat( const in vec3 lightDir, const in vec3 viewDir, const in vec3 normal, const in PhysicalMaterial material) {
		vec3 f0 = material.clearcoatF0;
		float f90 = material.clearcoatF90;
		float roughness = material.clearcoatRoughness;
		float alpha = pow2( roughness );
		vec3 halfDir = normalize( lightDir + viewDir );
		float dotNL = saturate( dot( normal, lightDir ) );
		float dotNV = saturate( dot( normal, viewDir ) );
		float dotNH = saturate( dot( normal, halfDir ) );
		float dotVH = saturate( dot( viewDir, halfDir ) );
		vec3 F = F_Schlick( f0, f90, dotVH );
		float V = V_GGX_SmithCorrelated( alpha, dotNL, dotNV );
		float D = D_GGX( alpha, dotNH );
		return F * ( V * D );
	}
#endif
vec3 BRDF_GGX( const in vec3 lightDir, const in vec3 viewDir, const in vec3 normal, const in PhysicalMaterial material ) {
	vec3 f0 = material.specularColor;
	float f90 = material.specularF90;
	float roughness = material.roughness;
	float alpha = pow2( roughness );
	vec3 halfDir = normalize( lightDir + viewDir );
	float dotNL = saturate( dot( normal, lightDir ) );
	float dotNV = saturate( dot( normal, viewDir ) );
	float dotNH = saturate( dot( normal, halfDir ) );
	float dotVH = saturate( dot( viewDir, halfDir ) );
	vec3 F = F_Schlick( f0, f90, dotVH );
	#ifdef USE_IRIDESCENCE
		F = mix( F, material.iridescenceFresnel, material.iridescence );
	#endif
	#ifdef USE_ANISOTROPY
		float dotTL = dot( material.anisotropyT, lightDir );
		float dotTV = dot( material.anisotropyT, viewDir );
		float dotTH = dot( material.anisotropyT, halfDir );
		float dotBL = dot( material.anisotropyB, lightDir );
		float dotBV = dot( material.anisotropyB, viewDir );
		float dotBH = dot( material.anisotropyB, halfDir );
		float V = V_GGX_SmithCorrelated_Anisotropic( material.alphaT, alpha, dotTV, dotBV, dotTL, dotBL, dotNV, dotNL );
		float D = D_GGX_Anisotropic( material.alphaT, alpha, dotNH, dotTH, dotBH );
	#else
		float V = V_GGX_SmithCorrelated( alpha, dotNL, dotNV );
		float D = D_GGX( alpha, dotNH );
	#endif
	return F * ( V * D );
}
vec2 LTC_Uv( const in vec3 N, const in vec3 V, const in float roughness ) {
	const float LUT_SIZE = 64.0;
	const float LUT_SCALE = ( LUT_SIZE - 1.0 ) / LUT_SIZE;
	const float LUT_BIAS = 0.5 / LUT_SIZE;
	float dotNV = saturate( dot( N, V ) );
	vec2 uv = vec2( roughness, sqrt( 1.0 - dotNV ) );
	uv = uv * LUT_SCALE + LUT_BIAS;
	return uv;
}
float LTC_ClippedSphereFormFactor( const in vec3 f ) {
	float l = length( f );
	return max( ( l * l + f.z ) / ( l + 1.0 ), 0.0 );
}
vec3 LTC_EdgeVectorFormFactor( const in vec3 v1, const in vec3 v2 ) {
	float x = dot( v1, v2 );
	float y = abs( x );
	float a = 0.8543985 + ( 0.4965155 + 0.0145206 * y ) * y;
	float b = 3.4175940 + ( 4.1616724 + y ) * y;
	float v = a / b;
	float theta_sintheta = ( x > 0.0 ) ? v : 0.5 * inversesqrt( max( 1.0 - x * x, 1e-7 ) ) - v;
	return cross( v1, v2 ) * theta_sintheta;
}
vec3 LTC_Evaluate( const in vec3 N, const in vec3 V, const in vec3 P, const in mat3 mInv, const in vec3 rectCoords[ 4 ] ) {
	vec3 v1 = rectCoords[ 1 ] - rectCoords[ 0 ];
	vec3 v2 = rectCoords[ 3 ] - rectCoords[ 0 ];
	vec3 lightNormal = cross( v1, v2 );
	if( dot( lightNormal, P - rectCoords[ 0 ] ) < 0.0 ) return vec3( 0.0 );
	vec3 T1, T2;
	T1 = normalize( V - N * dot( V, N ) );
	T2 = - cross( N, T1 );
	mat3 mat = mInv * transposeMat3( mat3( T1, T2, N ) );
	vec3 coords[ 4 ];
	coords[ 0 ] = mat * ( rectCoords[ 0 ] - P );
	coords[ 1 ] = mat * ( rectCoords[ 1 ] - P );
	coords[ 2 ] = mat * ( rectCoords[ 2 ] - P );
	coords[ 3 ] = mat * ( rectCoords[ 3 ] - P );
	coords[ 0 ] = normalize( coords[ 0 ] );
	coords[ 1 ] = normalize( coords[ 1 ] );
	coords[ 2 ] = normalize( coords[ 2 ] );
	coords[ 3 ] = normalize( coords[ 3 ] );
	vec3 vectorFormFactor = vec3( 0.0 );
	vectorFormFactor += LTC_EdgeVectorFormFactor( coords[ 0 ], coords[ 1 ] );
	vectorFormFactor += LTC_EdgeVectorFormFactor( coords[ 1 ], coords[ 2 ] );
	vectorFormFactor += LTC_EdgeVectorFormFactor( coords[ 2 ], coords[ 3 ] );
	vectorFormFactor += LTC_EdgeVectorFormFactor( coords[ 3 ], coords[ 0 ] );
	float result = LTC_ClippedSphereFormFactor( vectorFormFactor );
	return vec3( result );
}
#if defined( USE_SHEEN )
float D_Charlie( float roughness, float dotNH ) {
	float alpha = pow2( roughness );
	float invAlpha = 1.0 / alpha;
	float cos2h = dotNH * dotNH;
	float sin2h = max( 1.0 - cos2h, 0.0078125 );
	return ( 2.0 + invAlpha ) * pow( sin2h, invAlpha * 0.5 ) / ( 2.0 * PI );
}
float V_Neubelt( float dotNV, float dotNL ) {
	return saturate( 1.0 / ( 4.0 * ( dotNL + dotNV - dotNL * dotNV ) ) );
}
vec3 BRDF_Sheen( const in vec3 lightDir, const in vec3 viewDir, const in vec3 normal, vec3 sheenColor, const in float sheenRoughness ) {
	vec3 halfDir = normalize( lightDir + viewDir );
	float dotNL = saturate( dot( normal, lightDir ) );
	float dotNV = saturate( dot( normal, viewDir ) );
	float dotNH = saturate( dot( normal, halfDir ) );
	float D = D_Charlie( sheenRoughness, dotNH );
	float V = V_Neubelt( dotNV, dotNL );
	return sheenColor * ( D * V );
}
#endif
float IBLSheenBRDF( const in vec3 normal, const in vec3 viewDir, const in float roughness ) {
	float dotNV = saturate( dot( normal, viewDir ) );
	float r2 = roughness * roughness;
	float a = roughness < 0.25 ? -339.2 * r2 + 161.4 * roughness - 25.9 : -8.48 * r2 + 14.3 * roughness - 9.95;
	float b = roughness < 0.25 ? 44.0 * r2 - 23.7 * roughness + 3.26 : 1.97 * r2 - 3.27 * roughness + 0.72;
	float DG = exp( a * dotNV + b ) + ( roughness < 0.25 ? 0.0 : 0.1 * ( roughness - 0.25 ) );
	return saturate( DG * RECIPROCAL_PI );
}
vec2 DFGApprox( const in vec3 normal, const in vec3 viewDir, const in float roughness ) {
	float dotNV = saturate( dot( normal, viewDir ) );
	const vec4 c0 = vec4( - 1, - 0.0275, - 0.572, 0.022 );
	const vec4 c1 = vec4( 1, 0.0425, 1.04, - 0.04 );
	vec4 r = roughness * c0 + c1;
	float a004 = min( r.x * r.x, exp2( - 9.28 * dotNV ) ) * r.x + r.y;
	vec2 fab = vec2( - 1.04, 1.04 ) * a004 + r.zw;
	return fab;
}
vec3 EnvironmentBRDF( const in vec3 normal, const in vec3 viewDir, const in vec3 specularColor, const in float specularF90, const in float roughness ) {
	vec2 fab = DFGApprox( normal, viewDir, roughness );
	return specularColor * fab.x + specularF90 * fab.y;
}
#ifdef USE_IRIDESCENCE
void computeMultiscatteringIridescence( const in vec3 normal, const in vec3 viewDir, const in vec3 specularColor, const in float specularF90, const in float iridescence, const in vec3 iridescenceF0, const in float roughness, inout vec3 singleScatter, inout vec3 multiScatter ) {
#else
void computeMultiscattering( const in vec3 normal, const in vec3 viewDir, const in vec3 specularColor, const in float specularF90, const in float roughness, inout vec3 singleScatter, inout vec3 multiScatter ) {
#endif
	vec2 fab = DFGApprox( normal, viewDir, roughness );
	#ifdef USE_IRIDESCENCE
		vec3 Fr = mix( specularColor, iridescenceF0, iridescence );
	#else
		vec3 Fr = specularColor;
	#endif
	vec3 FssEss = Fr * fab.x + specularF90 * fab.y;
	float Ess = fab.x + fab.y;
	float Ems = 1.0 - Ess;
	vec3 Favg = Fr + ( 1.0 - Fr ) * 0.047619;	vec3 Fms = FssEss * Favg / ( 1.0 - Ems * Favg );
	singleScatter += FssEss;
	multiScatter += Fms * Ems;
}
#if NUM_RECT_AREA_LIGHTS > 0
	void RE_Direct_RectArea_Physical( const in RectAreaLight rectAreaLight, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in PhysicalMaterial material, inout ReflectedLight reflectedLight ) {
		vec3 normal = geometryNormal;
		vec3 viewDir = geometryViewDir;
		vec3 position = geometryPosition;
		vec3 lightPos = rectAreaLight.position;
		vec3 halfWidth = rectAreaLight.halfWidth;
		vec3 halfHeight = rectAreaLight.halfHeight;
		vec3 lightColor = rectAreaLight.color;
		float roughness = material.roughness;
		vec3 rectCoords[ 4 ];
		rectCoords[ 0 ] = lightPos + halfWidth - halfHeight;		rectCoords[ 1 ] = lightPos - halfWidth - halfHeight;
		rectCoords[ 2 ] = lightPos - halfWidth + halfHeight;
		rectCoords[ 3 ] = lightPos + halfWidth + halfHeight;
		vec2 uv = LTC_Uv( normal, viewDir, roughness );
		vec4 t1 = texture2D( ltc_1, uv );
		vec4 t2 = texture2D( ltc_2, uv );
		mat3 mInv = mat3(
			vec3( t1.x, 0, t1.y ),
			vec3(    0, 1,    0 ),
			vec3( t1.z, 0, t1.w )
		);
		vec3 fresnel = ( material.specularColor * t2.x + ( vec3( 1.0 ) - material.specularColor ) * t2.y );
		reflectedLight.directSpecular += lightColor * fresnel * LTC_Evaluate( normal, viewDir, position, mInv, rectCoords );
		reflectedLight.directDiffuse += lightColor * material.diffuseColor * LTC_Evaluate( normal, viewDir, position, mat3( 1.0 ), rectCoords );
	}
#endif
void RE_Direct_Physical( const in IncidentLight directLight, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in PhysicalMaterial material, inout ReflectedLight reflectedLight ) {
	float dotNL = saturate( dot( geometryNormal, directLight.direction ) );
	vec3 irradiance = dotNL * directLight.color;
	#ifdef USE_CLEARCOAT
		float dotNLcc = saturate( dot( geometryClearcoatNormal, directLight.direction ) );
		vec3 ccIrradiance = dotNLcc * directLight.color;
		clearcoatSpecularDirect += ccIrradiance * BRDF_GGX_Clearcoat( directLight.direction, geometryViewDir, geometryClearcoatNormal, material );
	#endif
	#ifdef USE_SHEEN
		sheenSpecularDirect += irradiance * BRDF_Sheen( directLight.direction, geometryViewDir, geometryNormal, material.sheenColor, material.sheenRoughness );
	#endif
	reflectedLight.directSpecular += irradiance * BRDF_GGX( directLight.direction, geometryViewDir, geometryNormal, material );
	reflectedLight.directDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
void RE_IndirectDiffuse_Physical( const in vec3 irradiance, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in PhysicalMaterial material, inout ReflectedLight reflectedLight ) {
	reflectedLight.indirectDiffuse += irradiance * BRDF_Lambert( material.diffuseColor );
}
void RE_IndirectSpecular_Physical( const in vec3 radiance, const in vec3 irradiance, const in vec3 clearcoatRadiance, const in vec3 geometryPosition, const in vec3 geometryNormal, const in vec3 geometryViewDir, const in vec3 geometryClearcoatNormal, const in PhysicalMaterial material, inout ReflectedLight reflectedLight) {
	#ifdef USE_CLEARCOAT
		clearcoatSpecularIndirect += clearcoatRadiance * EnvironmentBRDF( geometryClearcoatNormal, geometryViewDir, material.clearcoatF0, material.clearcoatF90, material.clearcoatRoughness );
	#endif
	#ifdef USE_SHEEN
		sheenSpecularIndirect += irradiance * material.sheenColor * IBLSheenBRDF( geometryNormal, geometryViewDir, material.sheenRoughness );
	#endif
	vec3 singleScattering = vec3( 0.0 );
	vec3 multiScattering = vec3( 0.0 );
	vec3 cosineWeightedIrradiance = irradiance * RECIPROCAL_PI;
	#ifdef USE_IRIDESCENCE
		computeMultiscatteringIridescence( geometryNormal, geometryViewDir, material.specularColor, material.specularF90, material.iridescence, material.iridescenceFresnel, material.roughness, singleScattering, multiScattering );
	#else
		computeMultiscattering( geometryNormal, geometryViewDir, material.specularColor, material.specularF90, material.roughness, singleScattering, multiScattering );
	#endif
	vec3 totalScattering = singleScattering + multiScattering;
	vec3 diffuse = material.diffuseColor * ( 1.0 - max( max( totalScattering.r, totalScattering.g ), totalScattering.b ) );
	reflectedLight.indirectSpecular += radiance * singleScattering;
	reflectedLight.indirectSpecular += multiScattering * cosineWeightedIrradiance;
	reflectedLight.indirectDiffuse += diffuse * cosineWeightedIrradiance;
}
#define RE_Direct				RE_Direct_Physical
#define RE_Direct_RectArea		RE_Direct_RectArea_Physical
#define RE_IndirectDiffuse		RE_IndirectDiffuse_Physical
#define RE_IndirectSpecular		RE_IndirectSpecular_Physical
float computeSpecularOcclusion( const in float dotNV, const in float ambientOcclusion, const in float roughness ) {
	return saturate( pow( dotNV + ambientOcclusion, exp2( - 16.0 * roughness - 1.0 ) ) - 1.0 + ambientOcclusion );
}`,i_=`
vec3 geometryPosition = - vViewPosition;
vec3 geometryNormal = normal;
vec3 geometryViewDir = ( isOrthographic ) ? vec3( 0, 0, 1 ) : normalize( vViewPosition );
vec3 geometryClearcoatNormal = vec3( 0.0 );
#ifdef USE_CLEARCOAT
	geometryClearcoatNormal = clearcoatNormal;
#endif
#ifdef USE_IRIDESCENCE
	float dotNVi = saturate( dot( normal, geometryViewDir ) );
	if ( material.iridescenceThickness == 0.0 ) {
		material.iridescence = 0.0;
	} else {
		material.iridescence = saturate( material.iridescence );
	}
	if ( material.iridescence > 0.0 ) {
		material.iridescenceFresnel = evalIridescence( 1.0, material.iridescenceIOR, dotNVi, material.iridescenceThickness, material.specularColor );
		material.iridescenceF0 = Schlick_to_F0( material.iridescenceFresnel, 1.0, dotNVi );
	}
#endif
IncidentLight directLight;
#if ( NUM_POINT_LIGHTS > 0 ) && defined( RE_Direct )
	PointLight pointLight;
	#if defined( USE_SHADOWMAP ) && NUM_POINT_LIGHT_SHADOWS > 0
	PointLightShadow pointLightShadow;
	#endif
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_POINT_LIGHTS; i ++ ) {
		pointLight = pointLights[ i ];
		getPointLightInfo( pointLight, geometryPosition, directLight );
		#if defined( USE_SHADOWMAP ) && ( UNROLLED_LOOP_INDEX < NUM_POINT_LIGHT_SHADOWS )
		pointLightShadow = pointLightShadows[ i ];
		directLight.color *= ( directLight.visible && receiveShadow ) ? getPointShadow( pointShadowMap[ i ], pointLightShadow.shadowMapSize, pointLightShadow.shadowIntensity, pointLightShadow.shadowBias, pointLightShadow.shadowRadius, vPointShadowCoord[ i ], pointLightShadow.shadowCameraNear, pointLightShadow.shadowCameraFar ) : 1.0;
		#endif
		RE_Direct( directLight, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
	}
	#pragma unroll_loop_end
#endif
#if ( NUM_SPOT_LIGHTS > 0 ) && defined( RE_Direct )
	SpotLight spotLight;
	vec4 spotColor;
	vec3 spotLightCoord;
	bool inSpotLightMap;
	#if defined( USE_SHADOWMAP ) && NUM_SPOT_LIGHT_SHADOWS > 0
	SpotLightShadow spotLightShadow;
	#endif
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_SPOT_LIGHTS; i ++ ) {
		spotLight = spotLights[ i ];
		getSpotLightInfo( spotLight, geometryPosition, directLight );
		#if ( UNROLLED_LOOP_INDEX < NUM_SPOT_LIGHT_SHADOWS_WITH_MAPS )
		#define SPOT_LIGHT_MAP_INDEX UNROLLED_LOOP_INDEX
		#elif ( UNROLLED_LOOP_INDEX < NUM_SPOT_LIGHT_SHADOWS )
		#define SPOT_LIGHT_MAP_INDEX NUM_SPOT_LIGHT_MAPS
		#else
		#define SPOT_LIGHT_MAP_INDEX ( UNROLLED_LOOP_INDEX - NUM_SPOT_LIGHT_SHADOWS + NUM_SPOT_LIGHT_SHADOWS_WITH_MAPS )
		#endif
		#if ( SPOT_LIGHT_MAP_INDEX < NUM_SPOT_LIGHT_MAPS )
			spotLightCoord = vSpotLightCoord[ i ].xyz / vSpotLightCoord[ i ].w;
			inSpotLightMap = all( lessThan( abs( spotLightCoord * 2. - 1. ), vec3( 1.0 ) ) );
			spotColor = texture2D( spotLightMap[ SPOT_LIGHT_MAP_INDEX ], spotLightCoord.xy );
			directLight.color = inSpotLightMap ? directLight.color * spotColor.rgb : directLight.color;
		#endif
		#undef SPOT_LIGHT_MAP_INDEX
		#if defined( USE_SHADOWMAP ) && ( UNROLLED_LOOP_INDEX < NUM_SPOT_LIGHT_SHADOWS )
		spotLightShadow = spotLightShadows[ i ];
		directLight.color *= ( directLight.visible && receiveShadow ) ? getShadow( spotShadowMap[ i ], spotLightShadow.shadowMapSize, spotLightShadow.shadowIntensity, spotLightShadow.shadowBias, spotLightShadow.shadowRadius, vSpotLightCoord[ i ] ) : 1.0;
		#endif
		RE_Direct( directLight, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
	}
	#pragma unroll_loop_end
#endif
#if ( NUM_DIR_LIGHTS > 0 ) && defined( RE_Direct )
	DirectionalLight directionalLight;
	#if defined( USE_SHADOWMAP ) && NUM_DIR_LIGHT_SHADOWS > 0
	DirectionalLightShadow directionalLightShadow;
	#endif
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_DIR_LIGHTS; i ++ ) {
		directionalLight = directionalLights[ i ];
		getDirectionalLightInfo( directionalLight, directLight );
		#if defined( USE_SHADOWMAP ) && ( UNROLLED_LOOP_INDEX < NUM_DIR_LIGHT_SHADOWS )
		directionalLightShadow = directionalLightShadows[ i ];
		directLight.color *= ( directLight.visible && receiveShadow ) ? getShadow( directionalShadowMap[ i ], directionalLightShadow.shadowMapSize, directionalLightShadow.shadowIntensity, directionalLightShadow.shadowBias, directionalLightShadow.shadowRadius, vDirectionalShadowCoord[ i ] ) : 1.0;
		#endif
		RE_Direct( directLight, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
	}
	#pragma unroll_loop_end
#endif
#if ( NUM_RECT_AREA_LIGHTS > 0 ) && defined( RE_Direct_RectArea )
	RectAreaLight rectAreaLight;
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_RECT_AREA_LIGHTS; i ++ ) {
		rectAreaLight = rectAreaLights[ i ];
		RE_Direct_RectArea( rectAreaLight, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
	}
	#pragma unroll_loop_end
#endif
#if defined( RE_IndirectDiffuse )
	vec3 iblIrradiance = vec3( 0.0 );
	vec3 irradiance = getAmbientLightIrradiance( ambientLightColor );
	#if defined( USE_LIGHT_PROBES )
		irradiance += getLightProbeIrradiance( lightProbe, geometryNormal );
	#endif
	#if ( NUM_HEMI_LIGHTS > 0 )
		#pragma unroll_loop_start
		for ( int i = 0; i < NUM_HEMI_LIGHTS; i ++ ) {
			irradiance += getHemisphereLightIrradiance( hemisphereLights[ i ], geometryNormal );
		}
		#pragma unroll_loop_end
	#endif
#endif
#if defined( RE_IndirectSpecular )
	vec3 radiance = vec3( 0.0 );
	vec3 clearcoatRadiance = vec3( 0.0 );
#endif`,s_=`#if defined( RE_IndirectDiffuse )
	#ifdef USE_LIGHTMAP
		vec4 lightMapTexel = texture2D( lightMap, vLightMapUv );
		vec3 lightMapIrradiance = lightMapTexel.rgb * lightMapIntensity;
		irradiance += lightMapIrradiance;
	#endif
	#if defined( USE_ENVMAP ) && defined( STANDARD ) && defined( ENVMAP_TYPE_CUBE_UV )
		iblIrradiance += getIBLIrradiance( geometryNormal );
	#endif
#endif
#if defined( USE_ENVMAP ) && defined( RE_IndirectSpecular )
	#ifdef USE_ANISOTROPY
		radiance += getIBLAnisotropyRadiance( geometryViewDir, geometryNormal, material.roughness, material.anisotropyB, material.anisotropy );
	#else
		radiance += getIBLRadiance( geometryViewDir, geometryNormal, material.roughness );
	#endif
	#ifdef USE_CLEARCOAT
		clearcoatRadiance += getIBLRadiance( geometryViewDir, geometryClearcoatNormal, material.clearcoatRoughness );
	#endif
#endif`,r_=`#if defined( RE_IndirectDiffuse )
	RE_IndirectDiffuse( irradiance, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
#endif
#if defined( RE_IndirectSpecular )
	RE_IndirectSpecular( radiance, iblIrradiance, clearcoatRadiance, geometryPosition, geometryNormal, geometryViewDir, geometryClearcoatNormal, material, reflectedLight );
#endif`,o_=`#if defined( USE_LOGDEPTHBUF )
	gl_FragDepth = vIsPerspective == 0.0 ? gl_FragCoord.z : log2( vFragDepth ) * logDepthBufFC * 0.5;
#endif`,a_=`#if defined( USE_LOGDEPTHBUF )
	uniform float logDepthBufFC;
	varying float vFragDepth;
	varying float vIsPerspective;
#endif`,l_=`#ifdef USE_LOGDEPTHBUF
	varying float vFragDepth;
	varying float vIsPerspective;
#endif`,c_=`#ifdef USE_LOGDEPTHBUF
	vFragDepth = 1.0 + gl_Position.w;
	vIsPerspective = float( isPerspectiveMatrix( projectionMatrix ) );
#endif`,h_=`#ifdef USE_MAP
	vec4 sampledDiffuseColor = texture2D( map, vMapUv );
	#ifdef DECODE_VIDEO_TEXTURE
		sampledDiffuseColor = sRGBTransferEOTF( sampledDiffuseColor );
	#endif
	diffuseColor *= sampledDiffuseColor;
#endif`,u_=`#ifdef USE_MAP
	uniform sampler2D map;
#endif`,f_=`#if defined( USE_MAP ) || defined( USE_ALPHAMAP )
	#if defined( USE_POINTS_UV )
		vec2 uv = vUv;
	#else
		vec2 uv = ( uvTransform * vec3( gl_PointCoord.x, 1.0 - gl_PointCoord.y, 1 ) ).xy;
	#endif
#endif
#ifdef USE_MAP
	diffuseColor *= texture2D( map, uv );
#endif
#ifdef USE_ALPHAMAP
	diffuseColor.a *= texture2D( alphaMap, uv ).g;
#endif`,d_=`#if defined( USE_POINTS_UV )
	varying vec2 vUv;
#else
	#if defined( USE_MAP ) || defined( USE_ALPHAMAP )
		uniform mat3 uvTransform;
	#endif
#endif
#ifdef USE_MAP
	uniform sampler2D map;
#endif
#ifdef USE_ALPHAMAP
	uniform sampler2D alphaMap;
#endif`,p_=`float metalnessFactor = metalness;
#ifdef USE_METALNESSMAP
	vec4 texelMetalness = texture2D( metalnessMap, vMetalnessMapUv );
	metalnessFactor *= texelMetalness.b;
#endif`,m_=`#ifdef USE_METALNESSMAP
	uniform sampler2D metalnessMap;
#endif`,g_=`#ifdef USE_INSTANCING_MORPH
	float morphTargetInfluences[ MORPHTARGETS_COUNT ];
	float morphTargetBaseInfluence = texelFetch( morphTexture, ivec2( 0, gl_InstanceID ), 0 ).r;
	for ( int i = 0; i < MORPHTARGETS_COUNT; i ++ ) {
		morphTargetInfluences[i] =  texelFetch( morphTexture, ivec2( i + 1, gl_InstanceID ), 0 ).r;
	}
#endif`,__=`#if defined( USE_MORPHCOLORS )
	vColor *= morphTargetBaseInfluence;
	for ( int i = 0; i < MORPHTARGETS_COUNT; i ++ ) {
		#if defined( USE_COLOR_ALPHA )
			if ( morphTargetInfluences[ i ] != 0.0 ) vColor += getMorph( gl_VertexID, i, 2 ) * morphTargetInfluences[ i ];
		#elif defined( USE_COLOR )
			if ( morphTargetInfluences[ i ] != 0.0 ) vColor += getMorph( gl_VertexID, i, 2 ).rgb * morphTargetInfluences[ i ];
		#endif
	}
#endif`,x_=`#ifdef USE_MORPHNORMALS
	objectNormal *= morphTargetBaseInfluence;
	for ( int i = 0; i < MORPHTARGETS_COUNT; i ++ ) {
		if ( morphTargetInfluences[ i ] != 0.0 ) objectNormal += getMorph( gl_VertexID, i, 1 ).xyz * morphTargetInfluences[ i ];
	}
#endif`,v_=`#ifdef USE_MORPHTARGETS
	#ifndef USE_INSTANCING_MORPH
		uniform float morphTargetBaseInfluence;
		uniform float morphTargetInfluences[ MORPHTARGETS_COUNT ];
	#endif
	uniform sampler2DArray morphTargetsTexture;
	uniform ivec2 morphTargetsTextureSize;
	vec4 getMorph( const in int vertexIndex, const in int morphTargetIndex, const in int offset ) {
		int texelIndex = vertexIndex * MORPHTARGETS_TEXTURE_STRIDE + offset;
		int y = texelIndex / morphTargetsTextureSize.x;
		int x = texelIndex - y * morphTargetsTextureSize.x;
		ivec3 morphUV = ivec3( x, y, morphTargetIndex );
		return texelFetch( morphTargetsTexture, morphUV, 0 );
	}
#endif`,y_=`#ifdef USE_MORPHTARGETS
	transformed *= morphTargetBaseInfluence;
	for ( int i = 0; i < MORPHTARGETS_COUNT; i ++ ) {
		if ( morphTargetInfluences[ i ] != 0.0 ) transformed += getMorph( gl_VertexID, i, 0 ).xyz * morphTargetInfluences[ i ];
	}
#endif`,M_=`float faceDirection = gl_FrontFacing ? 1.0 : - 1.0;
#ifdef FLAT_SHADED
	vec3 fdx = dFdx( vViewPosition );
	vec3 fdy = dFdy( vViewPosition );
	vec3 normal = normalize( cross( fdx, fdy ) );
#else
	vec3 normal = normalize( vNormal );
	#ifdef DOUBLE_SIDED
		normal *= faceDirection;
	#endif
#endif
#if defined( USE_NORMALMAP_TANGENTSPACE ) || defined( USE_CLEARCOAT_NORMALMAP ) || defined( USE_ANISOTROPY )
	#ifdef USE_TANGENT
		mat3 tbn = mat3( normalize( vTangent ), normalize( vBitangent ), normal );
	#else
		mat3 tbn = getTangentFrame( - vViewPosition, normal,
		#if defined( USE_NORMALMAP )
			vNormalMapUv
		#elif defined( USE_CLEARCOAT_NORMALMAP )
			vClearcoatNormalMapUv
		#else
			vUv
		#endif
		);
	#endif
	#if defined( DOUBLE_SIDED ) && ! defined( FLAT_SHADED )
		tbn[0] *= faceDirection;
		tbn[1] *= faceDirection;
	#endif
#endif
#ifdef USE_CLEARCOAT_NORMALMAP
	#ifdef USE_TANGENT
		mat3 tbn2 = mat3( normalize( vTangent ), normalize( vBitangent ), normal );
	#else
		mat3 tbn2 = getTangentFrame( - vViewPosition, normal, vClearcoatNormalMapUv );
	#endif
	#if defined( DOUBLE_SIDED ) && ! defined( FLAT_SHADED )
		tbn2[0] *= faceDirection;
		tbn2[1] *= faceDirection;
	#endif
#endif
vec3 nonPerturbedNormal = normal;`,S_=`#ifdef USE_NORMALMAP_OBJECTSPACE
	normal = texture2D( normalMap, vNormalMapUv ).xyz * 2.0 - 1.0;
	#ifdef FLIP_SIDED
		normal = - normal;
	#endif
	#ifdef DOUBLE_SIDED
		normal = normal * faceDirection;
	#endif
	normal = normalize( normalMatrix * normal );
#elif defined( USE_NORMALMAP_TANGENTSPACE )
	vec3 mapN = texture2D( normalMap, vNormalMapUv ).xyz * 2.0 - 1.0;
	mapN.xy *= normalScale;
	normal = normalize( tbn * mapN );
#elif defined( USE_BUMPMAP )
	normal = perturbNormalArb( - vViewPosition, normal, dHdxy_fwd(), faceDirection );
#endif`,b_=`#ifndef FLAT_SHADED
	varying vec3 vNormal;
	#ifdef USE_TANGENT
		varying vec3 vTangent;
		varying vec3 vBitangent;
	#endif
#endif`,w_=`#ifndef FLAT_SHADED
	varying vec3 vNormal;
	#ifdef USE_TANGENT
		varying vec3 vTangent;
		varying vec3 vBitangent;
	#endif
#endif`,E_=`#ifndef FLAT_SHADED
	vNormal = normalize( transformedNormal );
	#ifdef USE_TANGENT
		vTangent = normalize( transformedTangent );
		vBitangent = normalize( cross( vNormal, vTangent ) * tangent.w );
	#endif
#endif`,T_=`#ifdef USE_NORMALMAP
	uniform sampler2D normalMap;
	uniform vec2 normalScale;
#endif
#ifdef USE_NORMALMAP_OBJECTSPACE
	uniform mat3 normalMatrix;
#endif
#if ! defined ( USE_TANGENT ) && ( defined ( USE_NORMALMAP_TANGENTSPACE ) || defined ( USE_CLEARCOAT_NORMALMAP ) || defined( USE_ANISOTROPY ) )
	mat3 getTangentFrame( vec3 eye_pos, vec3 surf_norm, vec2 uv ) {
		vec3 q0 = dFdx( eye_pos.xyz );
		vec3 q1 = dFdy( eye_pos.xyz );
		vec2 st0 = dFdx( uv.st );
		vec2 st1 = dFdy( uv.st );
		vec3 N = surf_norm;
		vec3 q1perp = cross( q1, N );
		vec3 q0perp = cross( N, q0 );
		vec3 T = q1perp * st0.x + q0perp * st1.x;
		vec3 B = q1perp * st0.y + q0perp * st1.y;
		float det = max( dot( T, T ), dot( B, B ) );
		float scale = ( det == 0.0 ) ? 0.0 : inversesqrt( det );
		return mat3( T * scale, B * scale, N );
	}
#endif`,A_=`#ifdef USE_CLEARCOAT
	vec3 clearcoatNormal = nonPerturbedNormal;
#endif`,C_=`#ifdef USE_CLEARCOAT_NORMALMAP
	vec3 clearcoatMapN = texture2D( clearcoatNormalMap, vClearcoatNormalMapUv ).xyz * 2.0 - 1.0;
	clearcoatMapN.xy *= clearcoatNormalScale;
	clearcoatNormal = normalize( tbn2 * clearcoatMapN );
#endif`,R_=`#ifdef USE_CLEARCOATMAP
	uniform sampler2D clearcoatMap;
#endif
#ifdef USE_CLEARCOAT_NORMALMAP
	uniform sampler2D clearcoatNormalMap;
	uniform vec2 clearcoatNormalScale;
#endif
#ifdef USE_CLEARCOAT_ROUGHNESSMAP
	uniform sampler2D clearcoatRoughnessMap;
#endif`,P_=`#ifdef USE_IRIDESCENCEMAP
	uniform sampler2D iridescenceMap;
#endif
#ifdef USE_IRIDESCENCE_THICKNESSMAP
	uniform sampler2D iridescenceThicknessMap;
#endif`,I_=`#ifdef OPAQUE
diffuseColor.a = 1.0;
#endif
#ifdef USE_TRANSMISSION
diffuseColor.a *= material.transmissionAlpha;
#endif
gl_FragColor = vec4( outgoingLight, diffuseColor.a );`,L_=`vec3 packNormalToRGB( const in vec3 normal ) {
	return normalize( normal ) * 0.5 + 0.5;
}
vec3 unpackRGBToNormal( const in vec3 rgb ) {
	return 2.0 * rgb.xyz - 1.0;
}
const float PackUpscale = 256. / 255.;const float UnpackDownscale = 255. / 256.;const float ShiftRight8 = 1. / 256.;
const float Inv255 = 1. / 255.;
const vec4 PackFactors = vec4( 1.0, 256.0, 256.0 * 256.0, 256.0 * 256.0 * 256.0 );
const vec2 UnpackFactors2 = vec2( UnpackDownscale, 1.0 / PackFactors.g );
const vec3 UnpackFactors3 = vec3( UnpackDownscale / PackFactors.rg, 1.0 / PackFactors.b );
const vec4 UnpackFactors4 = vec4( UnpackDownscale / PackFactors.rgb, 1.0 / PackFactors.a );
vec4 packDepthToRGBA( const in float v ) {
	if( v <= 0.0 )
		return vec4( 0., 0., 0., 0. );
	if( v >= 1.0 )
		return vec4( 1., 1., 1., 1. );
	float vuf;
	float af = modf( v * PackFactors.a, vuf );
	float bf = modf( vuf * ShiftRight8, vuf );
	float gf = modf( vuf * ShiftRight8, vuf );
	return vec4( vuf * Inv255, gf * PackUpscale, bf * PackUpscale, af );
}
vec3 packDepthToRGB( const in float v ) {
	if( v <= 0.0 )
		return vec3( 0., 0., 0. );
	if( v >= 1.0 )
		return vec3( 1., 1., 1. );
	float vuf;
	float bf = modf( v * PackFactors.b, vuf );
	float gf = modf( vuf * ShiftRight8, vuf );
	return vec3( vuf * Inv255, gf * PackUpscale, bf );
}
vec2 packDepthToRG( const in float v ) {
	if( v <= 0.0 )
		return vec2( 0., 0. );
	if( v >= 1.0 )
		return vec2( 1., 1. );
	float vuf;
	float gf = modf( v * 256., vuf );
	return vec2( vuf * Inv255, gf );
}
float unpackRGBAToDepth( const in vec4 v ) {
	return dot( v, UnpackFactors4 );
}
float unpackRGBToDepth( const in vec3 v ) {
	return dot( v, UnpackFactors3 );
}
float unpackRGToDepth( const in vec2 v ) {
	return v.r * UnpackFactors2.r + v.g * UnpackFactors2.g;
}
vec4 pack2HalfToRGBA( const in vec2 v ) {
	vec4 r = vec4( v.x, fract( v.x * 255.0 ), v.y, fract( v.y * 255.0 ) );
	return vec4( r.x - r.y / 255.0, r.y, r.z - r.w / 255.0, r.w );
}
vec2 unpackRGBATo2Half( const in vec4 v ) {
	return vec2( v.x + ( v.y / 255.0 ), v.z + ( v.w / 255.0 ) );
}
float viewZToOrthographicDepth( const in float viewZ, const in float near, const in float far ) {
	return ( viewZ + near ) / ( near - far );
}
float orthographicDepthToViewZ( const in float depth, const in float near, const in float far ) {
	return depth * ( near - far ) - near;
}
float viewZToPerspectiveDepth( const in float viewZ, const in float near, const in float far ) {
	return ( ( near + viewZ ) * far ) / ( ( far - near ) * viewZ );
}
float perspectiveDepthToViewZ( const in float depth, const in float near, const in float far ) {
	return ( near * far ) / ( ( far - near ) * depth - far );
}`,D_=`#ifdef PREMULTIPLIED_ALPHA
	gl_FragColor.rgb *= gl_FragColor.a;
#endif`,N_=`vec4 mvPosition = vec4( transformed, 1.0 );
#ifdef USE_BATCHING
	mvPosition = batchingMatrix * mvPosition;
#endif
#ifdef USE_INSTANCING
	mvPosition = instanceMatrix * mvPosition;
#endif
mvPosition = modelViewMatrix * mvPosition;
gl_Position = projectionMatrix * mvPosition;`,U_=`#ifdef DITHERING
	gl_FragColor.rgb = dithering( gl_FragColor.rgb );
#endif`,O_=`#ifdef DITHERING
	vec3 dithering( vec3 color ) {
		float grid_position = rand( gl_FragCoord.xy );
		vec3 dither_shift_RGB = vec3( 0.25 / 255.0, -0.25 / 255.0, 0.25 / 255.0 );
		dither_shift_RGB = mix( 2.0 * dither_shift_RGB, -2.0 * dither_shift_RGB, grid_position );
		return color + dither_shift_RGB;
	}
#endif`,F_=`float roughnessFactor = roughness;
#ifdef USE_ROUGHNESSMAP
	vec4 texelRoughness = texture2D( roughnessMap, vRoughnessMapUv );
	roughnessFactor *= texelRoughness.g;
#endif`,B_=`#ifdef USE_ROUGHNESSMAP
	uniform sampler2D roughnessMap;
#endif`,k_=`#if NUM_SPOT_LIGHT_COORDS > 0
	varying vec4 vSpotLightCoord[ NUM_SPOT_LIGHT_COORDS ];
#endif
#if NUM_SPOT_LIGHT_MAPS > 0
	uniform sampler2D spotLightMap[ NUM_SPOT_LIGHT_MAPS ];
#endif
#ifdef USE_SHADOWMAP
	#if NUM_DIR_LIGHT_SHADOWS > 0
		uniform sampler2D directionalShadowMap[ NUM_DIR_LIGHT_SHADOWS ];
		varying vec4 vDirectionalShadowCoord[ NUM_DIR_LIGHT_SHADOWS ];
		struct DirectionalLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
		};
		uniform DirectionalLightShadow directionalLightShadows[ NUM_DIR_LIGHT_SHADOWS ];
	#endif
	#if NUM_SPOT_LIGHT_SHADOWS > 0
		uniform sampler2D spotShadowMap[ NUM_SPOT_LIGHT_SHADOWS ];
		struct SpotLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
		};
		uniform SpotLightShadow spotLightShadows[ NUM_SPOT_LIGHT_SHADOWS ];
	#endif
	#if NUM_POINT_LIGHT_SHADOWS > 0
		uniform sampler2D pointShadowMap[ NUM_POINT_LIGHT_SHADOWS ];
		varying vec4 vPointShadowCoord[ NUM_POINT_LIGHT_SHADOWS ];
		struct PointLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
			float shadowCameraNear;
			float shadowCameraFar;
		};
		uniform PointLightShadow pointLightShadows[ NUM_POINT_LIGHT_SHADOWS ];
	#endif
	float texture2DCompare( sampler2D depths, vec2 uv, float compare ) {
		return step( compare, unpackRGBAToDepth( texture2D( depths, uv ) ) );
	}
	vec2 texture2DDistribution( sampler2D shadow, vec2 uv ) {
		return unpackRGBATo2Half( texture2D( shadow, uv ) );
	}
	float VSMShadow (sampler2D shadow, vec2 uv, float compare ){
		float occlusion = 1.0;
		vec2 distribution = texture2DDistribution( shadow, uv );
		float hard_shadow = step( compare , distribution.x );
		if (hard_shadow != 1.0 ) {
			float distance = compare - distribution.x ;
			float variance = max( 0.00000, distribution.y * distribution.y );
			float softness_probability = variance / (variance + distance * distance );			softness_probability = clamp( ( softness_probability - 0.3 ) / ( 0.95 - 0.3 ), 0.0, 1.0 );			occlusion = clamp( max( hard_shadow, softness_probability ), 0.0, 1.0 );
		}
		return occlusion;
	}
	float getShadow( sampler2D shadowMap, vec2 shadowMapSize, float shadowIntensity, float shadowBias, float shadowRadius, vec4 shadowCoord ) {
		float shadow = 1.0;
		shadowCoord.xyz /= shadowCoord.w;
		shadowCoord.z += shadowBias;
		bool inFrustum = shadowCoord.x >= 0.0 && shadowCoord.x <= 1.0 && shadowCoord.y >= 0.0 && shadowCoord.y <= 1.0;
		bool frustumTest = inFrustum && shadowCoord.z <= 1.0;
		if ( frustumTest ) {
		#if defined( SHADOWMAP_TYPE_PCF )
			vec2 texelSize = vec2( 1.0 ) / shadowMapSize;
			float dx0 = - texelSize.x * shadowRadius;
			float dy0 = - texelSize.y * shadowRadius;
			float dx1 = + texelSize.x * shadowRadius;
			float dy1 = + texelSize.y * shadowRadius;
			float dx2 = dx0 / 2.0;
			float dy2 = dy0 / 2.0;
			float dx3 = dx1 / 2.0;
			float dy3 = dy1 / 2.0;
			shadow = (
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx0, dy0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( 0.0, dy0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx1, dy0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx2, dy2 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( 0.0, dy2 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx3, dy2 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx0, 0.0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx2, 0.0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy, shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx3, 0.0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx1, 0.0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx2, dy3 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( 0.0, dy3 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx3, dy3 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx0, dy1 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( 0.0, dy1 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, shadowCoord.xy + vec2( dx1, dy1 ), shadowCoord.z )
			) * ( 1.0 / 17.0 );
		#elif defined( SHADOWMAP_TYPE_PCF_SOFT )
			vec2 texelSize = vec2( 1.0 ) / shadowMapSize;
			float dx = texelSize.x;
			float dy = texelSize.y;
			vec2 uv = shadowCoord.xy;
			vec2 f = fract( uv * shadowMapSize + 0.5 );
			uv -= f * texelSize;
			shadow = (
				texture2DCompare( shadowMap, uv, shadowCoord.z ) +
				texture2DCompare( shadowMap, uv + vec2( dx, 0.0 ), shadowCoord.z ) +
				texture2DCompare( shadowMap, uv + vec2( 0.0, dy ), shadowCoord.z ) +
				texture2DCompare( shadowMap, uv + texelSize, shadowCoord.z ) +
				mix( texture2DCompare( shadowMap, uv + vec2( -dx, 0.0 ), shadowCoord.z ),
					 texture2DCompare( shadowMap, uv + vec2( 2.0 * dx, 0.0 ), shadowCoord.z ),
					 f.x ) +
				mix( texture2DCompare( shadowMap, uv + vec2( -dx, dy ), shadowCoord.z ),
					 texture2DCompare( shadowMap, uv + vec2( 2.0 * dx, dy ), shadowCoord.z ),
					 f.x ) +
				mix( texture2DCompare( shadowMap, uv + vec2( 0.0, -dy ), shadowCoord.z ),
					 texture2DCompare( shadowMap, uv + vec2( 0.0, 2.0 * dy ), shadowCoord.z ),
					 f.y ) +
				mix( texture2DCompare( shadowMap, uv + vec2( dx, -dy ), shadowCoord.z ),
					 texture2DCompare( shadowMap, uv + vec2( dx, 2.0 * dy ), shadowCoord.z ),
					 f.y ) +
				mix( mix( texture2DCompare( shadowMap, uv + vec2( -dx, -dy ), shadowCoord.z ),
						  texture2DCompare( shadowMap, uv + vec2( 2.0 * dx, -dy ), shadowCoord.z ),
						  f.x ),
					 mix( texture2DCompare( shadowMap, uv + vec2( -dx, 2.0 * dy ), shadowCoord.z ),
						  texture2DCompare( shadowMap, uv + vec2( 2.0 * dx, 2.0 * dy ), shadowCoord.z ),
						  f.x ),
					 f.y )
			) * ( 1.0 / 9.0 );
		#elif defined( SHADOWMAP_TYPE_VSM )
			shadow = VSMShadow( shadowMap, shadowCoord.xy, shadowCoord.z );
		#else
			shadow = texture2DCompare( shadowMap, shadowCoord.xy, shadowCoord.z );
		#endif
		}
		return mix( 1.0, shadow, shadowIntensity );
	}
	vec2 cubeToUV( vec3 v, float texelSizeY ) {
		vec3 absV = abs( v );
		float scaleToCube = 1.0 / max( absV.x, max( absV.y, absV.z ) );
		absV *= scaleToCube;
		v *= scaleToCube * ( 1.0 - 2.0 * texelSizeY );
		vec2 planar = v.xy;
		float almostATexel = 1.5 * texelSizeY;
		float almostOne = 1.0 - almostATexel;
		if ( absV.z >= almostOne ) {
			if ( v.z > 0.0 )
				planar.x = 4.0 - v.x;
		} else if ( absV.x >= almostOne ) {
			float signX = sign( v.x );
			planar.x = v.z * signX + 2.0 * signX;
		} else if ( absV.y >= almostOne ) {
			float signY = sign( v.y );
			planar.x = v.x + 2.0 * signY + 2.0;
			planar.y = v.z * signY - 2.0;
		}
		return vec2( 0.125, 0.25 ) * planar + vec2( 0.375, 0.75 );
	}
	float getPointShadow( sampler2D shadowMap, vec2 shadowMapSize, float shadowIntensity, float shadowBias, float shadowRadius, vec4 shadowCoord, float shadowCameraNear, float shadowCameraFar ) {
		float shadow = 1.0;
		vec3 lightToPosition = shadowCoord.xyz;
		
		float lightToPositionLength = length( lightToPosition );
		if ( lightToPositionLength - shadowCameraFar <= 0.0 && lightToPositionLength - shadowCameraNear >= 0.0 ) {
			float dp = ( lightToPositionLength - shadowCameraNear ) / ( shadowCameraFar - shadowCameraNear );			dp += shadowBias;
			vec3 bd3D = normalize( lightToPosition );
			vec2 texelSize = vec2( 1.0 ) / ( shadowMapSize * vec2( 4.0, 2.0 ) );
			#if defined( SHADOWMAP_TYPE_PCF ) || defined( SHADOWMAP_TYPE_PCF_SOFT ) || defined( SHADOWMAP_TYPE_VSM )
				vec2 offset = vec2( - 1, 1 ) * shadowRadius * texelSize.y;
				shadow = (
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.xyy, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.yyy, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.xyx, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.yyx, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.xxy, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.yxy, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.xxx, texelSize.y ), dp ) +
					texture2DCompare( shadowMap, cubeToUV( bd3D + offset.yxx, texelSize.y ), dp )
				) * ( 1.0 / 9.0 );
			#else
				shadow = texture2DCompare( shadowMap, cubeToUV( bd3D, texelSize.y ), dp );
			#endif
		}
		return mix( 1.0, shadow, shadowIntensity );
	}
#endif`,z_=`#if NUM_SPOT_LIGHT_COORDS > 0
	uniform mat4 spotLightMatrix[ NUM_SPOT_LIGHT_COORDS ];
	varying vec4 vSpotLightCoord[ NUM_SPOT_LIGHT_COORDS ];
#endif
#ifdef USE_SHADOWMAP
	#if NUM_DIR_LIGHT_SHADOWS > 0
		uniform mat4 directionalShadowMatrix[ NUM_DIR_LIGHT_SHADOWS ];
		varying vec4 vDirectionalShadowCoord[ NUM_DIR_LIGHT_SHADOWS ];
		struct DirectionalLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
		};
		uniform DirectionalLightShadow directionalLightShadows[ NUM_DIR_LIGHT_SHADOWS ];
	#endif
	#if NUM_SPOT_LIGHT_SHADOWS > 0
		struct SpotLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
		};
		uniform SpotLightShadow spotLightShadows[ NUM_SPOT_LIGHT_SHADOWS ];
	#endif
	#if NUM_POINT_LIGHT_SHADOWS > 0
		uniform mat4 pointShadowMatrix[ NUM_POINT_LIGHT_SHADOWS ];
		varying vec4 vPointShadowCoord[ NUM_POINT_LIGHT_SHADOWS ];
		struct PointLightShadow {
			float shadowIntensity;
			float shadowBias;
			float shadowNormalBias;
			float shadowRadius;
			vec2 shadowMapSize;
			float shadowCameraNear;
			float shadowCameraFar;
		};
		uniform PointLightShadow pointLightShadows[ NUM_POINT_LIGHT_SHADOWS ];
	#endif
#endif`,V_=`#if ( defined( USE_SHADOWMAP ) && ( NUM_DIR_LIGHT_SHADOWS > 0 || NUM_POINT_LIGHT_SHADOWS > 0 ) ) || ( NUM_SPOT_LIGHT_COORDS > 0 )
	vec3 shadowWorldNormal = inverseTransformDirection( transformedNormal, viewMatrix );
	vec4 shadowWorldPosition;
#endif
#if defined( USE_SHADOWMAP )
	#if NUM_DIR_LIGHT_SHADOWS > 0
		#pragma unroll_loop_start
		for ( int i = 0; i < NUM_DIR_LIGHT_SHADOWS; i ++ ) {
			shadowWorldPosition = worldPosition + vec4( shadowWorldNormal * directionalLightShadows[ i ].shadowNormalBias, 0 );
			vDirectionalShadowCoord[ i ] = directionalShadowMatrix[ i ] * shadowWorldPosition;
		}
		#pragma unroll_loop_end
	#endif
	#if NUM_POINT_LIGHT_SHADOWS > 0
		#pragma unroll_loop_start
		for ( int i = 0; i < NUM_POINT_LIGHT_SHADOWS; i ++ ) {
			shadowWorldPosition = worldPosition + vec4( shadowWorldNormal * pointLightShadows[ i ].shadowNormalBias, 0 );
			vPointShadowCoord[ i ] = pointShadowMatrix[ i ] * shadowWorldPosition;
		}
		#pragma unroll_loop_end
	#endif
#endif
#if NUM_SPOT_LIGHT_COORDS > 0
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_SPOT_LIGHT_COORDS; i ++ ) {
		shadowWorldPosition = worldPosition;
		#if ( defined( USE_SHADOWMAP ) && UNROLLED_LOOP_INDEX < NUM_SPOT_LIGHT_SHADOWS )
			shadowWorldPosition.xyz += shadowWorldNormal * spotLightShadows[ i ].shadowNormalBias;
		#endif
		vSpotLightCoord[ i ] = spotLightMatrix[ i ] * shadowWorldPosition;
	}
	#pragma unroll_loop_end
#endif`,H_=`float getShadowMask() {
	float shadow = 1.0;
	#ifdef USE_SHADOWMAP
	#if NUM_DIR_LIGHT_SHADOWS > 0
	DirectionalLightShadow directionalLight;
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_DIR_LIGHT_SHADOWS; i ++ ) {
		directionalLight = directionalLightShadows[ i ];
		shadow *= receiveShadow ? getShadow( directionalShadowMap[ i ], directionalLight.shadowMapSize, directionalLight.shadowIntensity, directionalLight.shadowBias, directionalLight.shadowRadius, vDirectionalShadowCoord[ i ] ) : 1.0;
	}
	#pragma unroll_loop_end
	#endif
	#if NUM_SPOT_LIGHT_SHADOWS > 0
	SpotLightShadow spotLight;
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_SPOT_LIGHT_SHADOWS; i ++ ) {
		spotLight = spotLightShadows[ i ];
		shadow *= receiveShadow ? getShadow( spotShadowMap[ i ], spotLight.shadowMapSize, spotLight.shadowIntensity, spotLight.shadowBias, spotLight.shadowRadius, vSpotLightCoord[ i ] ) : 1.0;
	}
	#pragma unroll_loop_end
	#endif
	#if NUM_POINT_LIGHT_SHADOWS > 0
	PointLightShadow pointLight;
	#pragma unroll_loop_start
	for ( int i = 0; i < NUM_POINT_LIGHT_SHADOWS; i ++ ) {
		pointLight = pointLightShadows[ i ];
		shadow *= receiveShadow ? getPointShadow( pointShadowMap[ i ], pointLight.shadowMapSize, pointLight.shadowIntensity, pointLight.shadowBias, pointLight.shadowRadius, vPointShadowCoord[ i ], pointLight.shadowCameraNear, pointLight.shadowCameraFar ) : 1.0;
	}
	#pragma unroll_loop_end
	#endif
	#endif
	return shadow;
}`,G_=`#ifdef USE_SKINNING
	mat4 boneMatX = getBoneMatrix( skinIndex.x );
	mat4 boneMatY = getBoneMatrix( skinIndex.y );
	mat4 boneMatZ = getBoneMatrix( skinIndex.z );
	mat4 boneMatW = getBoneMatrix( skinIndex.w );
#endif`,W_=`#ifdef USE_SKINNING
	uniform mat4 bindMatrix;
	uniform mat4 bindMatrixInverse;
	uniform highp sampler2D boneTexture;
	mat4 getBoneMatrix( const in float i ) {
		int size = textureSize( boneTexture, 0 ).x;
		int j = int( i ) * 4;
		int x = j % size;
		int y = j / size;
		vec4 v1 = texelFetch( boneTexture, ivec2( x, y ), 0 );
		vec4 v2 = texelFetch( boneTexture, ivec2( x + 1, y ), 0 );
		vec4 v3 = texelFetch( boneTexture, ivec2( x + 2, y ), 0 );
		vec4 v4 = texelFetch( boneTexture, ivec2( x + 3, y ), 0 );
		return mat4( v1, v2, v3, v4 );
	}
#endif`,X_=`#ifdef USE_SKINNING
	vec4 skinVertex = bindMatrix * vec4( transformed, 1.0 );
	vec4 skinned = vec4( 0.0 );
	skinned += boneMatX * skinVertex * skinWeight.x;
	skinned += boneMatY * skinVertex * skinWeight.y;
	skinned += boneMatZ * skinVertex * skinWeight.z;
	skinned += boneMatW * skinVertex * skinWeight.w;
	transformed = ( bindMatrixInverse * skinned ).xyz;
#endif`,Y_=`#ifdef USE_SKINNING
	mat4 skinMatrix = mat4( 0.0 );
	skinMatrix += skinWeight.x * boneMatX;
	skinMatrix += skinWeight.y * boneMatY;
	skinMatrix += skinWeight.z * boneMatZ;
	skinMatrix += skinWeight.w * boneMatW;
	skinMatrix = bindMatrixInverse * skinMatrix * bindMatrix;
	objectNormal = vec4( skinMatrix * vec4( objectNormal, 0.0 ) ).xyz;
	#ifdef USE_TANGENT
		objectTangent = vec4( skinMatrix * vec4( objectTangent, 0.0 ) ).xyz;
	#endif
#endif`,q_=`float specularStrength;
#ifdef USE_SPECULARMAP
	vec4 texelSpecular = texture2D( specularMap, vSpecularMapUv );
	specularStrength = texelSpecular.r;
#else
	specularStrength = 1.0;
#endif`,$_=`#ifdef USE_SPECULARMAP
	uniform sampler2D specularMap;
#endif`,Z_=`#if defined( TONE_MAPPING )
	gl_FragColor.rgb = toneMapping( gl_FragColor.rgb );
#endif`,J_=`#ifndef saturate
#define saturate( a ) clamp( a, 0.0, 1.0 )
#endif
uniform float toneMappingExposure;
vec3 LinearToneMapping( vec3 color ) {
	return saturate( toneMappingExposure * color );
}
vec3 ReinhardToneMapping( vec3 color ) {
	color *= toneMappingExposure;
	return saturate( color / ( vec3( 1.0 ) + color ) );
}
vec3 CineonToneMapping( vec3 color ) {
	color *= toneMappingExposure;
	color = max( vec3( 0.0 ), color - 0.004 );
	return pow( ( color * ( 6.2 * color + 0.5 ) ) / ( color * ( 6.2 * color + 1.7 ) + 0.06 ), vec3( 2.2 ) );
}
vec3 RRTAndODTFit( vec3 v ) {
	vec3 a = v * ( v + 0.0245786 ) - 0.000090537;
	vec3 b = v * ( 0.983729 * v + 0.4329510 ) + 0.238081;
	return a / b;
}
vec3 ACESFilmicToneMapping( vec3 color ) {
	const mat3 ACESInputMat = mat3(
		vec3( 0.59719, 0.07600, 0.02840 ),		vec3( 0.35458, 0.90834, 0.13383 ),
		vec3( 0.04823, 0.01566, 0.83777 )
	);
	const mat3 ACESOutputMat = mat3(
		vec3(  1.60475, -0.10208, -0.00327 ),		vec3( -0.53108,  1.10813, -0.07276 ),
		vec3( -0.07367, -0.00605,  1.07602 )
	);
	color *= toneMappingExposure / 0.6;
	color = ACESInputMat * color;
	color = RRTAndODTFit( color );
	color = ACESOutputMat * color;
	return saturate( color );
}
const mat3 LINEAR_REC2020_TO_LINEAR_SRGB = mat3(
	vec3( 1.6605, - 0.1246, - 0.0182 ),
	vec3( - 0.5876, 1.1329, - 0.1006 ),
	vec3( - 0.0728, - 0.0083, 1.1187 )
);
const mat3 LINEAR_SRGB_TO_LINEAR_REC2020 = mat3(
	vec3( 0.6274, 0.0691, 0.0164 ),
	vec3( 0.3293, 0.9195, 0.0880 ),
	vec3( 0.0433, 0.0113, 0.8956 )
);
vec3 agxDefaultContrastApprox( vec3 x ) {
	vec3 x2 = x * x;
	vec3 x4 = x2 * x2;
	return + 15.5 * x4 * x2
		- 40.14 * x4 * x
		+ 31.96 * x4
		- 6.868 * x2 * x
		+ 0.4298 * x2
		+ 0.1191 * x
		- 0.00232;
}
vec3 AgXToneMapping( vec3 color ) {
	const mat3 AgXInsetMatrix = mat3(
		vec3( 0.856627153315983, 0.137318972929847, 0.11189821299995 ),
		vec3( 0.0951212405381588, 0.761241990602591, 0.0767994186031903 ),
		vec3( 0.0482516061458583, 0.101439036467562, 0.811302368396859 )
	);
	const mat3 AgXOutsetMatrix = mat3(
		vec3( 1.1271005818144368, - 0.1413297634984383, - 0.14132976349843826 ),
		vec3( - 0.11060664309660323, 1.157823702216272, - 0.11060664309660294 ),
		vec3( - 0.016493938717834573, - 0.016493938717834257, 1.2519364065950405 )
	);
	const float AgxMinEv = - 12.47393;	const float AgxMaxEv = 4.026069;
	color *= toneMappingExposure;
	color = LINEAR_SRGB_TO_LINEAR_REC2020 * color;
	color = AgXInsetMatrix * color;
	color = max( color, 1e-10 );	color = log2( color );
	color = ( color - AgxMinEv ) / ( AgxMaxEv - AgxMinEv );
	color = clamp( color, 0.0, 1.0 );
	color = agxDefaultContrastApprox( color );
	color = AgXOutsetMatrix * color;
	color = pow( max( vec3( 0.0 ), color ), vec3( 2.2 ) );
	color = LINEAR_REC2020_TO_LINEAR_SRGB * color;
	color = clamp( color, 0.0, 1.0 );
	return color;
}
vec3 NeutralToneMapping( vec3 color ) {
	const float StartCompression = 0.8 - 0.04;
	const float Desaturation = 0.15;
	color *= toneMappingExposure;
	float x = min( color.r, min( color.g, color.b ) );
	float offset = x < 0.08 ? x - 6.25 * x * x : 0.04;
	color -= offset;
	float peak = max( color.r, max( color.g, color.b ) );
	if ( peak < StartCompression ) return color;
	float d = 1. - StartCompression;
	float newPeak = 1. - d * d / ( peak + d - StartCompression );
	color *= newPeak / peak;
	float g = 1. - 1. / ( Desaturation * ( peak - newPeak ) + 1. );
	return mix( color, vec3( newPeak ), g );
}
vec3 CustomToneMapping( vec3 color ) { return color; }`,K_=`#ifdef USE_TRANSMISSION
	material.transmission = transmission;
	material.transmissionAlpha = 1.0;
	material.thickness = thickness;
	material.attenuationDistance = attenuationDistance;
	material.attenuationColor = attenuationColor;
	#ifdef USE_TRANSMISSIONMAP
		material.transmission *= texture2D( transmissionMap, vTransmissionMapUv ).r;
	#endif
	#ifdef USE_THICKNESSMAP
		material.thickness *= texture2D( thicknessMap, vThicknessMapUv ).g;
	#endif
	vec3 pos = vWorldPosition;
	vec3 v = normalize( cameraPosition - pos );
	vec3 n = inverseTransformDirection( normal, viewMatrix );
	vec4 transmitted = getIBLVolumeRefraction(
		n, v, material.roughness, material.diffuseColor, material.specularColor, material.specularF90,
		pos, modelMatrix, viewMatrix, projectionMatrix, material.dispersion, material.ior, material.thickness,
		material.attenuationColor, material.attenuationDistance );
	material.transmissionAlpha = mix( material.transmissionAlpha, transmitted.a, material.transmission );
	totalDiffuse = mix( totalDiffuse, transmitted.rgb, material.transmission );
#endif`,j_=`#ifdef USE_TRANSMISSION
	uniform float transmission;
	uniform float thickness;
	uniform float attenuationDistance;
	uniform vec3 attenuationColor;
	#ifdef USE_TRANSMISSIONMAP
		uniform sampler2D transmissionMap;
	#endif
	#ifdef USE_THICKNESSMAP
		uniform sampler2D thicknessMap;
	#endif
	uniform vec2 transmissionSamplerSize;
	uniform sampler2D transmissionSamplerMap;
	uniform mat4 modelMatrix;
	uniform mat4 projectionMatrix;
	varying vec3 vWorldPosition;
	float w0( float a ) {
		return ( 1.0 / 6.0 ) * ( a * ( a * ( - a + 3.0 ) - 3.0 ) + 1.0 );
	}
	float w1( float a ) {
		return ( 1.0 / 6.0 ) * ( a *  a * ( 3.0 * a - 6.0 ) + 4.0 );
	}
	float w2( float a ){
		return ( 1.0 / 6.0 ) * ( a * ( a * ( - 3.0 * a + 3.0 ) + 3.0 ) + 1.0 );
	}
	float w3( float a ) {
		return ( 1.0 / 6.0 ) * ( a * a * a );
	}
	float g0( float a ) {
		return w0( a ) + w1( a );
	}
	float g1( float a ) {
		return w2( a ) + w3( a );
	}
	float h0( float a ) {
		return - 1.0 + w1( a ) / ( w0( a ) + w1( a ) );
	}
	float h1( float a ) {
		return 1.0 + w3( a ) / ( w2( a ) + w3( a ) );
	}
	vec4 bicubic( sampler2D tex, vec2 uv, vec4 texelSize, float lod ) {
		uv = uv * texelSize.zw + 0.5;
		vec2 iuv = floor( uv );
		vec2 fuv = fract( uv );
		float g0x = g0( fuv.x );
		float g1x = g1( fuv.x );
		float h0x = h0( fuv.x );
		float h1x = h1( fuv.x );
		float h0y = h0( fuv.y );
		float h1y = h1( fuv.y );
		vec2 p0 = ( vec2( iuv.x + h0x, iuv.y + h0y ) - 0.5 ) * texelSize.xy;
		vec2 p1 = ( vec2( iuv.x + h1x, iuv.y + h0y ) - 0.5 ) * texelSize.xy;
		vec2 p2 = ( vec2( iuv.x + h0x, iuv.y + h1y ) - 0.5 ) * texelSize.xy;
		vec2 p3 = ( vec2( iuv.x + h1x, iuv.y + h1y ) - 0.5 ) * texelSize.xy;
		return g0( fuv.y ) * ( g0x * textureLod( tex, p0, lod ) + g1x * textureLod( tex, p1, lod ) ) +
			g1( fuv.y ) * ( g0x * textureLod( tex, p2, lod ) + g1x * textureLod( tex, p3, lod ) );
	}
	vec4 textureBicubic( sampler2D sampler, vec2 uv, float lod ) {
		vec2 fLodSize = vec2( textureSize( sampler, int( lod ) ) );
		vec2 cLodSize = vec2( textureSize( sampler, int( lod + 1.0 ) ) );
		vec2 fLodSizeInv = 1.0 / fLodSize;
		vec2 cLodSizeInv = 1.0 / cLodSize;
		vec4 fSample = bicubic( sampler, uv, vec4( fLodSizeInv, fLodSize ), floor( lod ) );
		vec4 cSample = bicubic( sampler, uv, vec4( cLodSizeInv, cLodSize ), ceil( lod ) );
		return mix( fSample, cSample, fract( lod ) );
	}
	vec3 getVolumeTransmissionRay( const in vec3 n, const in vec3 v, const in float thickness, const in float ior, const in mat4 modelMatrix ) {
		vec3 refractionVector = refract( - v, normalize( n ), 1.0 / ior );
		vec3 modelScale;
		modelScale.x = length( vec3( modelMatrix[ 0 ].xyz ) );
		modelScale.y = length( vec3( modelMatrix[ 1 ].xyz ) );
		modelScale.z = length( vec3( modelMatrix[ 2 ].xyz ) );
		return normalize( refractionVector ) * thickness * modelScale;
	}
	float applyIorToRoughness( const in float roughness, const in float ior ) {
		return roughness * clamp( ior * 2.0 - 2.0, 0.0, 1.0 );
	}
	vec4 getTransmissionSample( const in vec2 fragCoord, const in float roughness, const in float ior ) {
		float lod = log2( transmissionSamplerSize.x ) * applyIorToRoughness( roughness, ior );
		return textureBicubic( transmissionSamplerMap, fragCoord.xy, lod );
	}
	vec3 volumeAttenuation( const in float transmissionDistance, const in vec3 attenuationColor, const in float attenuationDistance ) {
		if ( isinf( attenuationDistance ) ) {
			return vec3( 1.0 );
		} else {
			vec3 attenuationCoefficient = -log( attenuationColor ) / attenuationDistance;
			vec3 transmittance = exp( - attenuationCoefficient * transmissionDistance );			return transmittance;
		}
	}
	vec4 getIBLVolumeRefraction( const in vec3 n, const in vec3 v, const in float roughness, const in vec3 diffuseColor,
		const in vec3 specularColor, const in float specularF90, const in vec3 position, const in mat4 modelMatrix,
		const in mat4 viewMatrix, const in mat4 projMatrix, const in float dispersion, const in float ior, const in float thickness,
		const in vec3 attenuationColor, const in float attenuationDistance ) {
		vec4 transmittedLight;
		vec3 transmittance;
		#ifdef USE_DISPERSION
			float halfSpread = ( ior - 1.0 ) * 0.025 * dispersion;
			vec3 iors = vec3( ior - halfSpread, ior, ior + halfSpread );
			for ( int i = 0; i < 3; i ++ ) {
				vec3 transmissionRay = getVolumeTransmissionRay( n, v, thickness, iors[ i ], modelMatrix );
				vec3 refractedRayExit = position + transmissionRay;
		
				vec4 ndcPos = projMatrix * viewMatrix * vec4( refractedRayExit, 1.0 );
				vec2 refractionCoords = ndcPos.xy / ndcPos.w;
				refractionCoords += 1.0;
				refractionCoords /= 2.0;
		
				vec4 transmissionSample = getTransmissionSample( refractionCoords, roughness, iors[ i ] );
				transmittedLight[ i ] = transmissionSample[ i ];
				transmittedLight.a += transmissionSample.a;
				transmittance[ i ] = diffuseColor[ i ] * volumeAttenuation( length( transmissionRay ), attenuationColor, attenuationDistance )[ i ];
			}
			transmittedLight.a /= 3.0;
		
		#else
		
			vec3 transmissionRay = getVolumeTransmissionRay( n, v, thickness, ior, modelMatrix );
			vec3 refractedRayExit = position + transmissionRay;
			vec4 ndcPos = projMatrix * viewMatrix * vec4( refractedRayExit, 1.0 );
			vec2 refractionCoords = ndcPos.xy / ndcPos.w;
			refractionCoords += 1.0;
			refractionCoords /= 2.0;
			transmittedLight = getTransmissionSample( refractionCoords, roughness, ior );
			transmittance = diffuseColor * volumeAttenuation( length( transmissionRay ), attenuationColor, attenuationDistance );
		
		#endif
		vec3 attenuatedColor = transmittance * transmittedLight.rgb;
		vec3 F = EnvironmentBRDF( n, v, specularColor, specularF90, roughness );
		float transmittanceFactor = ( transmittance.r + transmittance.g + transmittance.b ) / 3.0;
		return vec4( ( 1.0 - F ) * attenuatedColor, 1.0 - ( 1.0 - transmittedLight.a ) * transmittanceFactor );
	}
#endif`,Q_=`#if defined( USE_UV ) || defined( USE_ANISOTROPY )
	varying vec2 vUv;
#endif
#ifdef USE_MAP
	varying vec2 vMapUv;
#endif
#ifdef USE_ALPHAMAP
	varying vec2 vAlphaMapUv;
#endif
#ifdef USE_LIGHTMAP
	varying vec2 vLightMapUv;
#endif
#ifdef USE_AOMAP
	varying vec2 vAoMapUv;
#endif
#ifdef USE_BUMPMAP
	varying vec2 vBumpMapUv;
#endif
#ifdef USE_NORMALMAP
	varying vec2 vNormalMapUv;
#endif
#ifdef USE_EMISSIVEMAP
	varying vec2 vEmissiveMapUv;
#endif
#ifdef USE_METALNESSMAP
	varying vec2 vMetalnessMapUv;
#endif
#ifdef USE_ROUGHNESSMAP
	varying vec2 vRoughnessMapUv;
#endif
#ifdef USE_ANISOTROPYMAP
	varying vec2 vAnisotropyMapUv;
#endif
#ifdef USE_CLEARCOATMAP
	varying vec2 vClearcoatMapUv;
#endif
#ifdef USE_CLEARCOAT_NORMALMAP
	varying vec2 vClearcoatNormalMapUv;
#endif
#ifdef USE_CLEARCOAT_ROUGHNESSMAP
	varying vec2 vClearcoatRoughnessMapUv;
#endif
#ifdef USE_IRIDESCENCEMAP
	varying vec2 vIridescenceMapUv;
#endif
#ifdef USE_IRIDESCENCE_THICKNESSMAP
	varying vec2 vIridescenceThicknessMapUv;
#endif
#ifdef USE_SHEEN_COLORMAP
	varying vec2 vSheenColorMapUv;
#endif
#ifdef USE_SHEEN_ROUGHNESSMAP
	varying vec2 vSheenRoughnessMapUv;
#endif
#ifdef USE_SPECULARMAP
	varying vec2 vSpecularMapUv;
#endif
#ifdef USE_SPECULAR_COLORMAP
	varying vec2 vSpecularColorMapUv;
#endif
#ifdef USE_SPECULAR_INTENSITYMAP
	varying vec2 vSpecularIntensityMapUv;
#endif
#ifdef USE_TRANSMISSIONMAP
	uniform mat3 transmissionMapTransform;
	varying vec2 vTransmissionMapUv;
#endif
#ifdef USE_THICKNESSMAP
	uniform mat3 thicknessMapTransform;
	varying vec2 vThicknessMapUv;
#endif`,tx=`#if defined( USE_UV ) || defined( USE_ANISOTROPY )
	varying vec2 vUv;
#endif
#ifdef USE_MAP
	uniform mat3 mapTransform;
	varying vec2 vMapUv;
#endif
#ifdef USE_ALPHAMAP
	uniform mat3 alphaMapTransform;
	varying vec2 vAlphaMapUv;
#endif
#ifdef USE_LIGHTMAP
	uniform mat3 lightMapTransform;
	varying vec2 vLightMapUv;
#endif
#ifdef USE_AOMAP
	uniform mat3 aoMapTransform;
	varying vec2 vAoMapUv;
#endif
#ifdef USE_BUMPMAP
	uniform mat3 bumpMapTransform;
	varying vec2 vBumpMapUv;
#endif
#ifdef USE_NORMALMAP
	uniform mat3 normalMapTransform;
	varying vec2 vNormalMapUv;
#endif
#ifdef USE_DISPLACEMENTMAP
	uniform mat3 displacementMapTransform;
	varying vec2 vDisplacementMapUv;
#endif
#ifdef USE_EMISSIVEMAP
	uniform mat3 emissiveMapTransform;
	varying vec2 vEmissiveMapUv;
#endif
#ifdef USE_METALNESSMAP
	uniform mat3 metalnessMapTransform;
	varying vec2 vMetalnessMapUv;
#endif
#ifdef USE_ROUGHNESSMAP
	uniform mat3 roughnessMapTransform;
	varying vec2 vRoughnessMapUv;
#endif
#ifdef USE_ANISOTROPYMAP
	uniform mat3 anisotropyMapTransform;
	varying vec2 vAnisotropyMapUv;
#endif
#ifdef USE_CLEARCOATMAP
	uniform mat3 clearcoatMapTransform;
	varying vec2 vClearcoatMapUv;
#endif
#ifdef USE_CLEARCOAT_NORMALMAP
	uniform mat3 clearcoatNormalMapTransform;
	varying vec2 vClearcoatNormalMapUv;
#endif
#ifdef USE_CLEARCOAT_ROUGHNESSMAP
	uniform mat3 clearcoatRoughnessMapTransform;
	varying vec2 vClearcoatRoughnessMapUv;
#endif
#ifdef USE_SHEEN_COLORMAP
	uniform mat3 sheenColorMapTransform;
	varying vec2 vSheenColorMapUv;
#endif
#ifdef USE_SHEEN_ROUGHNESSMAP
	uniform mat3 sheenRoughnessMapTransform;
	varying vec2 vSheenRoughnessMapUv;
#endif
#ifdef USE_IRIDESCENCEMAP
	uniform mat3 iridescenceMapTransform;
	varying vec2 vIridescenceMapUv;
#endif
#ifdef USE_IRIDESCENCE_THICKNESSMAP
	uniform mat3 iridescenceThicknessMapTransform;
	varying vec2 vIridescenceThicknessMapUv;
#endif
#ifdef USE_SPECULARMAP
	uniform mat3 specularMapTransform;
	varying vec2 vSpecularMapUv;
#endif
#ifdef USE_SPECULAR_COLORMAP
	uniform mat3 specularColorMapTransform;
	varying vec2 vSpecularColorMapUv;
#endif
#ifdef USE_SPECULAR_INTENSITYMAP
	uniform mat3 specularIntensityMapTransform;
	varying vec2 vSpecularIntensityMapUv;
#endif
#ifdef USE_TRANSMISSIONMAP
	uniform mat3 transmissionMapTransform;
	varying vec2 vTransmissionMapUv;
#endif
#ifdef USE_THICKNESSMAP
	uniform mat3 thicknessMapTransform;
	varying vec2 vThicknessMapUv;
#endif`,ex=`#if defined( USE_UV ) || defined( USE_ANISOTROPY )
	vUv = vec3( uv, 1 ).xy;
#endif
#ifdef USE_MAP
	vMapUv = ( mapTransform * vec3( MAP_UV, 1 ) ).xy;
#endif
#ifdef USE_ALPHAMAP
	vAlphaMapUv = ( alphaMapTransform * vec3( ALPHAMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_LIGHTMAP
	vLightMapUv = ( lightMapTransform * vec3( LIGHTMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_AOMAP
	vAoMapUv = ( aoMapTransform * vec3( AOMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_BUMPMAP
	vBumpMapUv = ( bumpMapTransform * vec3( BUMPMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_NORMALMAP
	vNormalMapUv = ( normalMapTransform * vec3( NORMALMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_DISPLACEMENTMAP
	vDisplacementMapUv = ( displacementMapTransform * vec3( DISPLACEMENTMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_EMISSIVEMAP
	vEmissiveMapUv = ( emissiveMapTransform * vec3( EMISSIVEMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_METALNESSMAP
	vMetalnessMapUv = ( metalnessMapTransform * vec3( METALNESSMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_ROUGHNESSMAP
	vRoughnessMapUv = ( roughnessMapTransform * vec3( ROUGHNESSMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_ANISOTROPYMAP
	vAnisotropyMapUv = ( anisotropyMapTransform * vec3( ANISOTROPYMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_CLEARCOATMAP
	vClearcoatMapUv = ( clearcoatMapTransform * vec3( CLEARCOATMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_CLEARCOAT_NORMALMAP
	vClearcoatNormalMapUv = ( clearcoatNormalMapTransform * vec3( CLEARCOAT_NORMALMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_CLEARCOAT_ROUGHNESSMAP
	vClearcoatRoughnessMapUv = ( clearcoatRoughnessMapTransform * vec3( CLEARCOAT_ROUGHNESSMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_IRIDESCENCEMAP
	vIridescenceMapUv = ( iridescenceMapTransform * vec3( IRIDESCENCEMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_IRIDESCENCE_THICKNESSMAP
	vIridescenceThicknessMapUv = ( iridescenceThicknessMapTransform * vec3( IRIDESCENCE_THICKNESSMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_SHEEN_COLORMAP
	vSheenColorMapUv = ( sheenColorMapTransform * vec3( SHEEN_COLORMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_SHEEN_ROUGHNESSMAP
	vSheenRoughnessMapUv = ( sheenRoughnessMapTransform * vec3( SHEEN_ROUGHNESSMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_SPECULARMAP
	vSpecularMapUv = ( specularMapTransform * vec3( SPECULARMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_SPECULAR_COLORMAP
	vSpecularColorMapUv = ( specularColorMapTransform * vec3( SPECULAR_COLORMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_SPECULAR_INTENSITYMAP
	vSpecularIntensityMapUv = ( specularIntensityMapTransform * vec3( SPECULAR_INTENSITYMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_TRANSMISSIONMAP
	vTransmissionMapUv = ( transmissionMapTransform * vec3( TRANSMISSIONMAP_UV, 1 ) ).xy;
#endif
#ifdef USE_THICKNESSMAP
	vThicknessMapUv = ( thicknessMapTransform * vec3( THICKNESSMAP_UV, 1 ) ).xy;
#endif`,nx=`#if defined( USE_ENVMAP ) || defined( DISTANCE ) || defined ( USE_SHADOWMAP ) || defined ( USE_TRANSMISSION ) || NUM_SPOT_LIGHT_COORDS > 0
	vec4 worldPosition = vec4( transformed, 1.0 );
	#ifdef USE_BATCHING
		worldPosition = batchingMatrix * worldPosition;
	#endif
	#ifdef USE_INSTANCING
		worldPosition = instanceMatrix * worldPosition;
	#endif
	worldPosition = modelMatrix * worldPosition;
#endif`,ix=`varying vec2 vUv;
uniform mat3 uvTransform;
void main() {
	vUv = ( uvTransform * vec3( uv, 1 ) ).xy;
	gl_Position = vec4( position.xy, 1.0, 1.0 );
}`,sx=`uniform sampler2D t2D;
uniform float backgroundIntensity;
varying vec2 vUv;
void main() {
	vec4 texColor = texture2D( t2D, vUv );
	#ifdef DECODE_VIDEO_TEXTURE
		texColor = vec4( mix( pow( texColor.rgb * 0.9478672986 + vec3( 0.0521327014 ), vec3( 2.4 ) ), texColor.rgb * 0.0773993808, vec3( lessThanEqual( texColor.rgb, vec3( 0.04045 ) ) ) ), texColor.w );
	#endif
	texColor.rgb *= backgroundIntensity;
	gl_FragColor = texColor;
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
}`,rx=`varying vec3 vWorldDirection;
#include <common>
void main() {
	vWorldDirection = transformDirection( position, modelMatrix );
	#include <begin_vertex>
	#include <project_vertex>
	gl_Position.z = gl_Position.w;
}`,ox=`#ifdef ENVMAP_TYPE_CUBE
	uniform samplerCube envMap;
#elif defined( ENVMAP_TYPE_CUBE_UV )
	uniform sampler2D envMap;
#endif
uniform float flipEnvMap;
uniform float backgroundBlurriness;
uniform float backgroundIntensity;
uniform mat3 backgroundRotation;
varying vec3 vWorldDirection;
#include <cube_uv_reflection_fragment>
void main() {
	#ifdef ENVMAP_TYPE_CUBE
		vec4 texColor = textureCube( envMap, backgroundRotation * vec3( flipEnvMap * vWorldDirection.x, vWorldDirection.yz ) );
	#elif defined( ENVMAP_TYPE_CUBE_UV )
		vec4 texColor = textureCubeUV( envMap, backgroundRotation * vWorldDirection, backgroundBlurriness );
	#else
		vec4 texColor = vec4( 0.0, 0.0, 0.0, 1.0 );
	#endif
	texColor.rgb *= backgroundIntensity;
	gl_FragColor = texColor;
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
}`,ax=`varying vec3 vWorldDirection;
#include <common>
void main() {
	vWorldDirection = transformDirection( position, modelMatrix );
	#include <begin_vertex>
	#include <project_vertex>
	gl_Position.z = gl_Position.w;
}`,lx=`uniform samplerCube tCube;
uniform float tFlip;
uniform float opacity;
varying vec3 vWorldDirection;
void main() {
	vec4 texColor = textureCube( tCube, vec3( tFlip * vWorldDirection.x, vWorldDirection.yz ) );
	gl_FragColor = texColor;
	gl_FragColor.a *= opacity;
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
}`,cx=`#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
varying vec2 vHighPrecisionZW;
void main() {
	#include <uv_vertex>
	#include <batching_vertex>
	#include <skinbase_vertex>
	#include <morphinstance_vertex>
	#ifdef USE_DISPLACEMENTMAP
		#include <beginnormal_vertex>
		#include <morphnormal_vertex>
		#include <skinnormal_vertex>
	#endif
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	vHighPrecisionZW = gl_Position.zw;
}`,hx=`#if DEPTH_PACKING == 3200
	uniform float opacity;
#endif
#include <common>
#include <packing>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
varying vec2 vHighPrecisionZW;
void main() {
	vec4 diffuseColor = vec4( 1.0 );
	#include <clipping_planes_fragment>
	#if DEPTH_PACKING == 3200
		diffuseColor.a = opacity;
	#endif
	#include <map_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <logdepthbuf_fragment>
	float fragCoordZ = 0.5 * vHighPrecisionZW[0] / vHighPrecisionZW[1] + 0.5;
	#if DEPTH_PACKING == 3200
		gl_FragColor = vec4( vec3( 1.0 - fragCoordZ ), opacity );
	#elif DEPTH_PACKING == 3201
		gl_FragColor = packDepthToRGBA( fragCoordZ );
	#elif DEPTH_PACKING == 3202
		gl_FragColor = vec4( packDepthToRGB( fragCoordZ ), 1.0 );
	#elif DEPTH_PACKING == 3203
		gl_FragColor = vec4( packDepthToRG( fragCoordZ ), 0.0, 1.0 );
	#endif
}`,ux=`#define DISTANCE
varying vec3 vWorldPosition;
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <batching_vertex>
	#include <skinbase_vertex>
	#include <morphinstance_vertex>
	#ifdef USE_DISPLACEMENTMAP
		#include <beginnormal_vertex>
		#include <morphnormal_vertex>
		#include <skinnormal_vertex>
	#endif
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <worldpos_vertex>
	#include <clipping_planes_vertex>
	vWorldPosition = worldPosition.xyz;
}`,fx=`#define DISTANCE
uniform vec3 referencePosition;
uniform float nearDistance;
uniform float farDistance;
varying vec3 vWorldPosition;
#include <common>
#include <packing>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <clipping_planes_pars_fragment>
void main () {
	vec4 diffuseColor = vec4( 1.0 );
	#include <clipping_planes_fragment>
	#include <map_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	float dist = length( vWorldPosition - referencePosition );
	dist = ( dist - nearDistance ) / ( farDistance - nearDistance );
	dist = saturate( dist );
	gl_FragColor = packDepthToRGBA( dist );
}`,dx=`varying vec3 vWorldDirection;
#include <common>
void main() {
	vWorldDirection = transformDirection( position, modelMatrix );
	#include <begin_vertex>
	#include <project_vertex>
}`,px=`uniform sampler2D tEquirect;
varying vec3 vWorldDirection;
#include <common>
void main() {
	vec3 direction = normalize( vWorldDirection );
	vec2 sampleUV = equirectUv( direction );
	gl_FragColor = texture2D( tEquirect, sampleUV );
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
}`,mx=`uniform float scale;
attribute float lineDistance;
varying float vLineDistance;
#include <common>
#include <uv_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <morphtarget_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	vLineDistance = scale * lineDistance;
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	#include <fog_vertex>
}`,gx=`uniform vec3 diffuse;
uniform float opacity;
uniform float dashSize;
uniform float totalSize;
varying float vLineDistance;
#include <common>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <fog_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	if ( mod( vLineDistance, totalSize ) > dashSize ) {
		discard;
	}
	vec3 outgoingLight = vec3( 0.0 );
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	outgoingLight = diffuseColor.rgb;
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
}`,_x=`#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <envmap_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#if defined ( USE_ENVMAP ) || defined ( USE_SKINNING )
		#include <beginnormal_vertex>
		#include <morphnormal_vertex>
		#include <skinbase_vertex>
		#include <skinnormal_vertex>
		#include <defaultnormal_vertex>
	#endif
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	#include <worldpos_vertex>
	#include <envmap_vertex>
	#include <fog_vertex>
}`,xx=`uniform vec3 diffuse;
uniform float opacity;
#ifndef FLAT_SHADED
	varying vec3 vNormal;
#endif
#include <common>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <aomap_pars_fragment>
#include <lightmap_pars_fragment>
#include <envmap_common_pars_fragment>
#include <envmap_pars_fragment>
#include <fog_pars_fragment>
#include <specularmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <specularmap_fragment>
	ReflectedLight reflectedLight = ReflectedLight( vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ) );
	#ifdef USE_LIGHTMAP
		vec4 lightMapTexel = texture2D( lightMap, vLightMapUv );
		reflectedLight.indirectDiffuse += lightMapTexel.rgb * lightMapIntensity * RECIPROCAL_PI;
	#else
		reflectedLight.indirectDiffuse += vec3( 1.0 );
	#endif
	#include <aomap_fragment>
	reflectedLight.indirectDiffuse *= diffuseColor.rgb;
	vec3 outgoingLight = reflectedLight.indirectDiffuse;
	#include <envmap_fragment>
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,vx=`#define LAMBERT
varying vec3 vViewPosition;
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <envmap_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <shadowmap_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	vViewPosition = - mvPosition.xyz;
	#include <worldpos_vertex>
	#include <envmap_vertex>
	#include <shadowmap_vertex>
	#include <fog_vertex>
}`,yx=`#define LAMBERT
uniform vec3 diffuse;
uniform vec3 emissive;
uniform float opacity;
#include <common>
#include <packing>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <aomap_pars_fragment>
#include <lightmap_pars_fragment>
#include <emissivemap_pars_fragment>
#include <envmap_common_pars_fragment>
#include <envmap_pars_fragment>
#include <fog_pars_fragment>
#include <bsdfs>
#include <lights_pars_begin>
#include <normal_pars_fragment>
#include <lights_lambert_pars_fragment>
#include <shadowmap_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <specularmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	ReflectedLight reflectedLight = ReflectedLight( vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ) );
	vec3 totalEmissiveRadiance = emissive;
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <specularmap_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	#include <emissivemap_fragment>
	#include <lights_lambert_fragment>
	#include <lights_fragment_begin>
	#include <lights_fragment_maps>
	#include <lights_fragment_end>
	#include <aomap_fragment>
	vec3 outgoingLight = reflectedLight.directDiffuse + reflectedLight.indirectDiffuse + totalEmissiveRadiance;
	#include <envmap_fragment>
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,Mx=`#define MATCAP
varying vec3 vViewPosition;
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <color_pars_vertex>
#include <displacementmap_pars_vertex>
#include <fog_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	#include <fog_vertex>
	vViewPosition = - mvPosition.xyz;
}`,Sx=`#define MATCAP
uniform vec3 diffuse;
uniform float opacity;
uniform sampler2D matcap;
varying vec3 vViewPosition;
#include <common>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <fog_pars_fragment>
#include <normal_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	vec3 viewDir = normalize( vViewPosition );
	vec3 x = normalize( vec3( viewDir.z, 0.0, - viewDir.x ) );
	vec3 y = cross( viewDir, x );
	vec2 uv = vec2( dot( x, normal ), dot( y, normal ) ) * 0.495 + 0.5;
	#ifdef USE_MATCAP
		vec4 matcapColor = texture2D( matcap, uv );
	#else
		vec4 matcapColor = vec4( vec3( mix( 0.2, 0.8, uv.y ) ), 1.0 );
	#endif
	vec3 outgoingLight = diffuseColor.rgb * matcapColor.rgb;
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,bx=`#define NORMAL
#if defined( FLAT_SHADED ) || defined( USE_BUMPMAP ) || defined( USE_NORMALMAP_TANGENTSPACE )
	varying vec3 vViewPosition;
#endif
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphinstance_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
#if defined( FLAT_SHADED ) || defined( USE_BUMPMAP ) || defined( USE_NORMALMAP_TANGENTSPACE )
	vViewPosition = - mvPosition.xyz;
#endif
}`,wx=`#define NORMAL
uniform float opacity;
#if defined( FLAT_SHADED ) || defined( USE_BUMPMAP ) || defined( USE_NORMALMAP_TANGENTSPACE )
	varying vec3 vViewPosition;
#endif
#include <packing>
#include <uv_pars_fragment>
#include <normal_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( 0.0, 0.0, 0.0, opacity );
	#include <clipping_planes_fragment>
	#include <logdepthbuf_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	gl_FragColor = vec4( packNormalToRGB( normal ), diffuseColor.a );
	#ifdef OPAQUE
		gl_FragColor.a = 1.0;
	#endif
}`,Ex=`#define PHONG
varying vec3 vViewPosition;
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <envmap_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <shadowmap_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphinstance_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	vViewPosition = - mvPosition.xyz;
	#include <worldpos_vertex>
	#include <envmap_vertex>
	#include <shadowmap_vertex>
	#include <fog_vertex>
}`,Tx=`#define PHONG
uniform vec3 diffuse;
uniform vec3 emissive;
uniform vec3 specular;
uniform float shininess;
uniform float opacity;
#include <common>
#include <packing>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <aomap_pars_fragment>
#include <lightmap_pars_fragment>
#include <emissivemap_pars_fragment>
#include <envmap_common_pars_fragment>
#include <envmap_pars_fragment>
#include <fog_pars_fragment>
#include <bsdfs>
#include <lights_pars_begin>
#include <normal_pars_fragment>
#include <lights_phong_pars_fragment>
#include <shadowmap_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <specularmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	ReflectedLight reflectedLight = ReflectedLight( vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ) );
	vec3 totalEmissiveRadiance = emissive;
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <specularmap_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	#include <emissivemap_fragment>
	#include <lights_phong_fragment>
	#include <lights_fragment_begin>
	#include <lights_fragment_maps>
	#include <lights_fragment_end>
	#include <aomap_fragment>
	vec3 outgoingLight = reflectedLight.directDiffuse + reflectedLight.indirectDiffuse + reflectedLight.directSpecular + reflectedLight.indirectSpecular + totalEmissiveRadiance;
	#include <envmap_fragment>
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,Ax=`#define STANDARD
varying vec3 vViewPosition;
#ifdef USE_TRANSMISSION
	varying vec3 vWorldPosition;
#endif
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <shadowmap_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	vViewPosition = - mvPosition.xyz;
	#include <worldpos_vertex>
	#include <shadowmap_vertex>
	#include <fog_vertex>
#ifdef USE_TRANSMISSION
	vWorldPosition = worldPosition.xyz;
#endif
}`,Cx=`#define STANDARD
#ifdef PHYSICAL
	#define IOR
	#define USE_SPECULAR
#endif
uniform vec3 diffuse;
uniform vec3 emissive;
uniform float roughness;
uniform float metalness;
uniform float opacity;
#ifdef IOR
	uniform float ior;
#endif
#ifdef USE_SPECULAR
	uniform float specularIntensity;
	uniform vec3 specularColor;
	#ifdef USE_SPECULAR_COLORMAP
		uniform sampler2D specularColorMap;
	#endif
	#ifdef USE_SPECULAR_INTENSITYMAP
		uniform sampler2D specularIntensityMap;
	#endif
#endif
#ifdef USE_CLEARCOAT
	uniform float clearcoat;
	uniform float clearcoatRoughness;
#endif
#ifdef USE_DISPERSION
	uniform float dispersion;
#endif
#ifdef USE_IRIDESCENCE
	uniform float iridescence;
	uniform float iridescenceIOR;
	uniform float iridescenceThicknessMinimum;
	uniform float iridescenceThicknessMaximum;
#endif
#ifdef USE_SHEEN
	uniform vec3 sheenColor;
	uniform float sheenRoughness;
	#ifdef USE_SHEEN_COLORMAP
		uniform sampler2D sheenColorMap;
	#endif
	#ifdef USE_SHEEN_ROUGHNESSMAP
		uniform sampler2D sheenRoughnessMap;
	#endif
#endif
#ifdef USE_ANISOTROPY
	uniform vec2 anisotropyVector;
	#ifdef USE_ANISOTROPYMAP
		uniform sampler2D anisotropyMap;
	#endif
#endif
varying vec3 vViewPosition;
#include <common>
#include <packing>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <aomap_pars_fragment>
#include <lightmap_pars_fragment>
#include <emissivemap_pars_fragment>
#include <iridescence_fragment>
#include <cube_uv_reflection_fragment>
#include <envmap_common_pars_fragment>
#include <envmap_physical_pars_fragment>
#include <fog_pars_fragment>
#include <lights_pars_begin>
#include <normal_pars_fragment>
#include <lights_physical_pars_fragment>
#include <transmission_pars_fragment>
#include <shadowmap_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <clearcoat_pars_fragment>
#include <iridescence_pars_fragment>
#include <roughnessmap_pars_fragment>
#include <metalnessmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	ReflectedLight reflectedLight = ReflectedLight( vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ) );
	vec3 totalEmissiveRadiance = emissive;
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <roughnessmap_fragment>
	#include <metalnessmap_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	#include <clearcoat_normal_fragment_begin>
	#include <clearcoat_normal_fragment_maps>
	#include <emissivemap_fragment>
	#include <lights_physical_fragment>
	#include <lights_fragment_begin>
	#include <lights_fragment_maps>
	#include <lights_fragment_end>
	#include <aomap_fragment>
	vec3 totalDiffuse = reflectedLight.directDiffuse + reflectedLight.indirectDiffuse;
	vec3 totalSpecular = reflectedLight.directSpecular + reflectedLight.indirectSpecular;
	#include <transmission_fragment>
	vec3 outgoingLight = totalDiffuse + totalSpecular + totalEmissiveRadiance;
	#ifdef USE_SHEEN
		float sheenEnergyComp = 1.0 - 0.157 * max3( material.sheenColor );
		outgoingLight = outgoingLight * sheenEnergyComp + sheenSpecularDirect + sheenSpecularIndirect;
	#endif
	#ifdef USE_CLEARCOAT
		float dotNVcc = saturate( dot( geometryClearcoatNormal, geometryViewDir ) );
		vec3 Fcc = F_Schlick( material.clearcoatF0, material.clearcoatF90, dotNVcc );
		outgoingLight = outgoingLight * ( 1.0 - material.clearcoat * Fcc ) + ( clearcoatSpecularDirect + clearcoatSpecularIndirect ) * material.clearcoat;
	#endif
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,Rx=`#define TOON
varying vec3 vViewPosition;
#include <common>
#include <batching_pars_vertex>
#include <uv_pars_vertex>
#include <displacementmap_pars_vertex>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <normal_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <shadowmap_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <normal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <displacementmap_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	vViewPosition = - mvPosition.xyz;
	#include <worldpos_vertex>
	#include <shadowmap_vertex>
	#include <fog_vertex>
}`,Px=`#define TOON
uniform vec3 diffuse;
uniform vec3 emissive;
uniform float opacity;
#include <common>
#include <packing>
#include <dithering_pars_fragment>
#include <color_pars_fragment>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <aomap_pars_fragment>
#include <lightmap_pars_fragment>
#include <emissivemap_pars_fragment>
#include <gradientmap_pars_fragment>
#include <fog_pars_fragment>
#include <bsdfs>
#include <lights_pars_begin>
#include <normal_pars_fragment>
#include <lights_toon_pars_fragment>
#include <shadowmap_pars_fragment>
#include <bumpmap_pars_fragment>
#include <normalmap_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	ReflectedLight reflectedLight = ReflectedLight( vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ), vec3( 0.0 ) );
	vec3 totalEmissiveRadiance = emissive;
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <color_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	#include <normal_fragment_begin>
	#include <normal_fragment_maps>
	#include <emissivemap_fragment>
	#include <lights_toon_fragment>
	#include <lights_fragment_begin>
	#include <lights_fragment_maps>
	#include <lights_fragment_end>
	#include <aomap_fragment>
	vec3 outgoingLight = reflectedLight.directDiffuse + reflectedLight.indirectDiffuse + totalEmissiveRadiance;
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
	#include <dithering_fragment>
}`,Ix=`uniform float size;
uniform float scale;
#include <common>
#include <color_pars_vertex>
#include <fog_pars_vertex>
#include <morphtarget_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
#ifdef USE_POINTS_UV
	varying vec2 vUv;
	uniform mat3 uvTransform;
#endif
void main() {
	#ifdef USE_POINTS_UV
		vUv = ( uvTransform * vec3( uv, 1 ) ).xy;
	#endif
	#include <color_vertex>
	#include <morphinstance_vertex>
	#include <morphcolor_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <project_vertex>
	gl_PointSize = size;
	#ifdef USE_SIZEATTENUATION
		bool isPerspective = isPerspectiveMatrix( projectionMatrix );
		if ( isPerspective ) gl_PointSize *= ( scale / - mvPosition.z );
	#endif
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	#include <worldpos_vertex>
	#include <fog_vertex>
}`,Lx=`uniform vec3 diffuse;
uniform float opacity;
#include <common>
#include <color_pars_fragment>
#include <map_particle_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <fog_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	vec3 outgoingLight = vec3( 0.0 );
	#include <logdepthbuf_fragment>
	#include <map_particle_fragment>
	#include <color_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	outgoingLight = diffuseColor.rgb;
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
	#include <premultiplied_alpha_fragment>
}`,Dx=`#include <common>
#include <batching_pars_vertex>
#include <fog_pars_vertex>
#include <morphtarget_pars_vertex>
#include <skinning_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <shadowmap_pars_vertex>
void main() {
	#include <batching_vertex>
	#include <beginnormal_vertex>
	#include <morphinstance_vertex>
	#include <morphnormal_vertex>
	#include <skinbase_vertex>
	#include <skinnormal_vertex>
	#include <defaultnormal_vertex>
	#include <begin_vertex>
	#include <morphtarget_vertex>
	#include <skinning_vertex>
	#include <project_vertex>
	#include <logdepthbuf_vertex>
	#include <worldpos_vertex>
	#include <shadowmap_vertex>
	#include <fog_vertex>
}`,Nx=`uniform vec3 color;
uniform float opacity;
#include <common>
#include <packing>
#include <fog_pars_fragment>
#include <bsdfs>
#include <lights_pars_begin>
#include <logdepthbuf_pars_fragment>
#include <shadowmap_pars_fragment>
#include <shadowmask_pars_fragment>
void main() {
	#include <logdepthbuf_fragment>
	gl_FragColor = vec4( color, opacity * ( 1.0 - getShadowMask() ) );
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
}`,Ux=`uniform float rotation;
uniform vec2 center;
#include <common>
#include <uv_pars_vertex>
#include <fog_pars_vertex>
#include <logdepthbuf_pars_vertex>
#include <clipping_planes_pars_vertex>
void main() {
	#include <uv_vertex>
	vec4 mvPosition = modelViewMatrix[ 3 ];
	vec2 scale = vec2( length( modelMatrix[ 0 ].xyz ), length( modelMatrix[ 1 ].xyz ) );
	#ifndef USE_SIZEATTENUATION
		bool isPerspective = isPerspectiveMatrix( projectionMatrix );
		if ( isPerspective ) scale *= - mvPosition.z;
	#endif
	vec2 alignedPosition = ( position.xy - ( center - vec2( 0.5 ) ) ) * scale;
	vec2 rotatedPosition;
	rotatedPosition.x = cos( rotation ) * alignedPosition.x - sin( rotation ) * alignedPosition.y;
	rotatedPosition.y = sin( rotation ) * alignedPosition.x + cos( rotation ) * alignedPosition.y;
	mvPosition.xy += rotatedPosition;
	gl_Position = projectionMatrix * mvPosition;
	#include <logdepthbuf_vertex>
	#include <clipping_planes_vertex>
	#include <fog_vertex>
}`,Ox=`uniform vec3 diffuse;
uniform float opacity;
#include <common>
#include <uv_pars_fragment>
#include <map_pars_fragment>
#include <alphamap_pars_fragment>
#include <alphatest_pars_fragment>
#include <alphahash_pars_fragment>
#include <fog_pars_fragment>
#include <logdepthbuf_pars_fragment>
#include <clipping_planes_pars_fragment>
void main() {
	vec4 diffuseColor = vec4( diffuse, opacity );
	#include <clipping_planes_fragment>
	vec3 outgoingLight = vec3( 0.0 );
	#include <logdepthbuf_fragment>
	#include <map_fragment>
	#include <alphamap_fragment>
	#include <alphatest_fragment>
	#include <alphahash_fragment>
	outgoingLight = diffuseColor.rgb;
	#include <opaque_fragment>
	#include <tonemapping_fragment>
	#include <colorspace_fragment>
	#include <fog_fragment>
}`,ne={alphahash_fragment:s0,alphahash_pars_fragment:r0,alphamap_fragment:o0,alphamap_pars_fragment:a0,alphatest_fragment:l0,alphatest_pars_fragment:c0,aomap_fragment:h0,aomap_pars_fragment:u0,batching_pars_vertex:f0,batching_vertex:d0,begin_vertex:p0,beginnormal_vertex:m0,bsdfs:g0,iridescence_fragment:_0,bumpmap_pars_fragment:x0,clipping_planes_fragment:v0,clipping_planes_pars_fragment:y0,clipping_planes_pars_vertex:M0,clipping_planes_vertex:S0,color_fragment:b0,color_pars_fragment:w0,color_pars_vertex:E0,color_vertex:T0,common:A0,cube_uv_reflection_fragment:C0,defaultnormal_vertex:R0,displacementmap_pars_vertex:P0,displacementmap_vertex:I0,emissivemap_fragment:L0,emissivemap_pars_fragment:D0,colorspace_fragment:N0,colorspace_pars_fragment:U0,envmap_fragment:O0,envmap_common_pars_fragment:F0,envmap_pars_fragment:B0,envmap_pars_vertex:k0,envmap_physical_pars_fragment:J0,envmap_vertex:z0,fog_vertex:V0,fog_pars_vertex:H0,fog_fragment:G0,fog_pars_fragment:W0,gradientmap_pars_fragment:X0,lightmap_pars_fragment:Y0,lights_lambert_fragment:q0,lights_lambert_pars_fragment:$0,lights_pars_begin:Z0,lights_toon_fragment:K0,lights_toon_pars_fragment:j0,lights_phong_fragment:Q0,lights_phong_pars_fragment:t_,lights_physical_fragment:e_,lights_physical_pars_fragment:n_,lights_fragment_begin:i_,lights_fragment_maps:s_,lights_fragment_end:r_,logdepthbuf_fragment:o_,logdepthbuf_pars_fragment:a_,logdepthbuf_pars_vertex:l_,logdepthbuf_vertex:c_,map_fragment:h_,map_pars_fragment:u_,map_particle_fragment:f_,map_particle_pars_fragment:d_,metalnessmap_fragment:p_,metalnessmap_pars_fragment:m_,morphinstance_vertex:g_,morphcolor_vertex:__,morphnormal_vertex:x_,morphtarget_pars_vertex:v_,morphtarget_vertex:y_,normal_fragment_begin:M_,normal_fragment_maps:S_,normal_pars_fragment:b_,normal_pars_vertex:w_,normal_vertex:E_,normalmap_pars_fragment:T_,clearcoat_normal_fragment_begin:A_,clearcoat_normal_fragment_maps:C_,clearcoat_pars_fragment:R_,iridescence_pars_fragment:P_,opaque_fragment:I_,packing:L_,premultiplied_alpha_fragment:D_,project_vertex:N_,dithering_fragment:U_,dithering_pars_fragment:O_,roughnessmap_fragment:F_,roughnessmap_pars_fragment:B_,shadowmap_pars_fragment:k_,shadowmap_pars_vertex:z_,shadowmap_vertex:V_,shadowmask_pars_fragment:H_,skinbase_vertex:G_,skinning_pars_vertex:W_,skinning_vertex:X_,skinnormal_vertex:Y_,specularmap_fragment:q_,specularmap_pars_fragment:$_,tonemapping_fragment:Z_,tonemapping_pars_fragment:J_,transmission_fragment:K_,transmission_pars_fragment:j_,uv_pars_fragment:Q_,uv_pars_vertex:tx,uv_vertex:ex,worldpos_vertex:nx,background_vert:ix,background_frag:sx,backgroundCube_vert:rx,backgroundCube_frag:ox,cube_vert:ax,cube_frag:lx,depth_vert:cx,depth_frag:hx,distanceRGBA_vert:ux,distanceRGBA_frag:fx,equirect_vert:dx,equirect_frag:px,linedashed_vert:mx,linedashed_frag:gx,meshbasic_vert:_x,meshbasic_frag:xx,meshlambert_vert:vx,meshlambert_frag:yx,meshmatcap_vert:Mx,meshmatcap_frag:Sx,meshnormal_vert:bx,meshnormal_frag:wx,meshphong_vert:Ex,meshphong_frag:Tx,meshphysical_vert:Ax,meshphysical_frag:Cx,meshtoon_vert:Rx,meshtoon_frag:Px,points_vert:Ix,points_frag:Lx,shadow_vert:Dx,shadow_frag:Nx,sprite_vert:Ux,sprite_frag:Ox},vt={common:{diffuse:{value:new pe(16777215)},opacity:{value:1},map:{value:null},mapTransform:{value:new te},alphaMap:{value:null},alphaMapTransform:{value:new te},alphaTest:{value:0}},specularmap:{specularMap:{value:null},specularMapTransform:{value:new te}},envmap:{envMap:{value:null},envMapRotation:{value:new te},flipEnvMap:{value:-1},reflectivity:{value:1},ior:{value:1.5},refractionRatio:{value:.98}},aomap:{aoMap:{value:null},aoMapIntensity:{value:1},aoMapTransform:{value:new te}},lightmap:{lightMap:{value:null},lightMapIntensity:{value:1},lightMapTransform:{value:new te}},bumpmap:{bumpMap:{value:null},bumpMapTransform:{value:new te},bumpScale:{value:1}},normalmap:{normalMap:{value:null},normalMapTransform:{value:new te},normalScale:{value:new ie(1,1)}},displacementmap:{displacementMap:{value:null},displacementMapTransform:{value:new te},displacementScale:{value:1},displacementBias:{value:0}},emissivemap:{emissiveMap:{value:null},emissiveMapTransform:{value:new te}},metalnessmap:{metalnessMap:{value:null},metalnessMapTransform:{value:new te}},roughnessmap:{roughnessMap:{value:null},roughnessMapTransform:{value:new te}},gradientmap:{gradientMap:{value:null}},fog:{fogDensity:{value:25e-5},fogNear:{value:1},fogFar:{value:2e3},fogColor:{value:new pe(16777215)}},lights:{ambientLightColor:{value:[]},lightProbe:{value:[]},directionalLights:{value:[],properties:{direction:{},color:{}}},directionalLightShadows:{value:[],properties:{shadowIntensity:1,shadowBias:{},shadowNormalBias:{},shadowRadius:{},shadowMapSize:{}}},directionalShadowMap:{value:[]},directionalShadowMatrix:{value:[]},spotLights:{value:[],properties:{color:{},position:{},direction:{},distance:{},coneCos:{},penumbraCos:{},decay:{}}},spotLightShadows:{value:[],properties:{shadowIntensity:1,shadowBias:{},shadowNormalBias:{},shadowRadius:{},shadowMapSize:{}}},spotLightMap:{value:[]},spotShadowMap:{value:[]},spotLightMatrix:{value:[]},pointLights:{value:[],properties:{color:{},position:{},decay:{},distance:{}}},pointLightShadows:{value:[],properties:{shadowIntensity:1,shadowBias:{},shadowNormalBias:{},shadowRadius:{},shadowMapSize:{},shadowCameraNear:{},shadowCameraFar:{}}},pointShadowMap:{value:[]},pointShadowMatrix:{value:[]},hemisphereLights:{value:[],properties:{direction:{},skyColor:{},groundColor:{}}},rectAreaLights:{value:[],properties:{color:{},position:{},width:{},height:{}}},ltc_1:{value:null},ltc_2:{value:null}},points:{diffuse:{value:new pe(16777215)},opacity:{value:1},size:{value:1},scale:{value:1},map:{value:null},alphaMap:{value:null},alphaMapTransform:{value:new te},alphaTest:{value:0},uvTransform:{value:new te}},sprite:{diffuse:{value:new pe(16777215)},opacity:{value:1},center:{value:new ie(.5,.5)},rotation:{value:0},map:{value:null},mapTransform:{value:new te},alphaMap:{value:null},alphaMapTransform:{value:new te},alphaTest:{value:0}}},xi={basic:{uniforms:Mn([vt.common,vt.specularmap,vt.envmap,vt.aomap,vt.lightmap,vt.fog]),vertexShader:ne.meshbasic_vert,fragmentShader:ne.meshbasic_frag},lambert:{uniforms:Mn([vt.common,vt.specularmap,vt.envmap,vt.aomap,vt.lightmap,vt.emissivemap,vt.bumpmap,vt.normalmap,vt.displacementmap,vt.fog,vt.lights,{emissive:{value:new pe(0)}}]),vertexShader:ne.meshlambert_vert,fragmentShader:ne.meshlambert_frag},phong:{uniforms:Mn([vt.common,vt.specularmap,vt.envmap,vt.aomap,vt.lightmap,vt.emissivemap,vt.bumpmap,vt.normalmap,vt.displacementmap,vt.fog,vt.lights,{emissive:{value:new pe(0)},specular:{value:new pe(1118481)},shininess:{value:30}}]),vertexShader:ne.meshphong_vert,fragmentShader:ne.meshphong_frag},standard:{uniforms:Mn([vt.common,vt.envmap,vt.aomap,vt.lightmap,vt.emissivemap,vt.bumpmap,vt.normalmap,vt.displacementmap,vt.roughnessmap,vt.metalnessmap,vt.fog,vt.lights,{emissive:{value:new pe(0)},roughness:{value:1},metalness:{value:0},envMapIntensity:{value:1}}]),vertexShader:ne.meshphysical_vert,fragmentShader:ne.meshphysical_frag},toon:{uniforms:Mn([vt.common,vt.aomap,vt.lightmap,vt.emissivemap,vt.bumpmap,vt.normalmap,vt.displacementmap,vt.gradientmap,vt.fog,vt.lights,{emissive:{value:new pe(0)}}]),vertexShader:ne.meshtoon_vert,fragmentShader:ne.meshtoon_frag},matcap:{uniforms:Mn([vt.common,vt.bumpmap,vt.normalmap,vt.displacementmap,vt.fog,{matcap:{value:null}}]),vertexShader:ne.meshmatcap_vert,fragmentShader:ne.meshmatcap_frag},points:{uniforms:Mn([vt.points,vt.fog]),vertexShader:ne.points_vert,fragmentShader:ne.points_frag},dashed:{uniforms:Mn([vt.common,vt.fog,{scale:{value:1},dashSize:{value:1},totalSize:{value:2}}]),vertexShader:ne.linedashed_vert,fragmentShader:ne.linedashed_frag},depth:{uniforms:Mn([vt.common,vt.displacementmap]),vertexShader:ne.depth_vert,fragmentShader:ne.depth_frag},normal:{uniforms:Mn([vt.common,vt.bumpmap,vt.normalmap,vt.displacementmap,{opacity:{value:1}}]),vertexShader:ne.meshnormal_vert,fragmentShader:ne.meshnormal_frag},sprite:{uniforms:Mn([vt.sprite,vt.fog]),vertexShader:ne.sprite_vert,fragmentShader:ne.sprite_frag},background:{uniforms:{uvTransform:{value:new te},t2D:{value:null},backgroundIntensity:{value:1}},vertexShader:ne.background_vert,fragmentShader:ne.background_frag},backgroundCube:{uniforms:{envMap:{value:null},flipEnvMap:{value:-1},backgroundBlurriness:{value:0},backgroundIntensity:{value:1},backgroundRotation:{value:new te}},vertexShader:ne.backgroundCube_vert,fragmentShader:ne.backgroundCube_frag},cube:{uniforms:{tCube:{value:null},tFlip:{value:-1},opacity:{value:1}},vertexShader:ne.cube_vert,fragmentShader:ne.cube_frag},equirect:{uniforms:{tEquirect:{value:null}},vertexShader:ne.equirect_vert,fragmentShader:ne.equirect_frag},distanceRGBA:{uniforms:Mn([vt.common,vt.displacementmap,{referencePosition:{value:new H},nearDistance:{value:1},farDistance:{value:1e3}}]),vertexShader:ne.distanceRGBA_vert,fragmentShader:ne.distanceRGBA_frag},shadow:{uniforms:Mn([vt.lights,vt.fog,{color:{value:new pe(0)},opacity:{value:1}}]),vertexShader:ne.shadow_vert,fragmentShader:ne.shadow_frag}};xi.physical={uniforms:Mn([xi.standard.uniforms,{clearcoat:{value:0},clearcoatMap:{value:null},clearcoatMapTransform:{value:new te},clearcoatNormalMap:{value:null},clearcoatNormalMapTransform:{value:new te},clearcoatNormalScale:{value:new ie(1,1)},clearcoatRoughness:{value:0},clearcoatRoughnessMap:{value:null},clearcoatRoughnessMapTransform:{value:new te},dispersion:{value:0},iridescence:{value:0},iridescenceMap:{value:null},iridescenceMapTransform:{value:new te},iridescenceIOR:{value:1.3},iridescenceThicknessMinimum:{value:100},iridescenceThicknessMaximum:{value:400},iridescenceThicknessMap:{value:null},iridescenceThicknessMapTransform:{value:new te},sheen:{value:0},sheenColor:{value:new pe(0)},sheenColorMap:{value:null},sheenColorMapTransform:{value:new te},sheenRoughness:{value:1},sheenRoughnessMap:{value:null},sheenRoughnessMapTransform:{value:new te},transmission:{value:0},transmissionMap:{value:null},transmissionMapTransform:{value:new te},transmissionSamplerSize:{value:new ie},transmissionSamplerMap:{value:null},thickness:{value:0},thicknessMap:{value:null},thicknessMapTransform:{value:new te},attenuationDistance:{value:0},attenuationColor:{value:new pe(0)},specularColor:{value:new pe(1,1,1)},specularColorMap:{value:null},specularColorMapTransform:{value:new te},specularIntensity:{value:1},specularIntensityMap:{value:null},specularIntensityMapTransform:{value:new te},anisotropyVector:{value:new ie},anisotropyMap:{value:null},anisotropyMapTransform:{value:new te}}]),vertexShader:ne.meshphysical_vert,fragmentShader:ne.meshphysical_frag};var Jo={r:0,b:0,g:0},vs=new ki,Fx=new Ve;function Bx(i,t,e,n,s,r,o){let a=new pe(0),l=r===!0?0:1,c,u,f=null,h=0,d=null;function _(T){let w=T.isScene===!0?T.background:null;return w&&w.isTexture&&(w=(T.backgroundBlurriness>0?e:t).get(w)),w}function x(T){let w=!1,b=_(T);b===null?p(a,l):b&&b.isColor&&(p(b,1),w=!0);let D=i.xr.getEnvironmentBlendMode();D==="additive"?n.buffers.color.setClear(0,0,0,1,o):D==="alpha-blend"&&n.buffers.color.setClear(0,0,0,0,o),(i.autoClear||w)&&(n.buffers.depth.setTest(!0),n.buffers.depth.setMask(!0),n.buffers.color.setMask(!0),i.clear(i.autoClearColor,i.autoClearDepth,i.autoClearStencil))}function m(T,w){let b=_(w);b&&(b.isCubeTexture||b.mapping===La)?(u===void 0&&(u=new En(new co(1,1,1),new An({name:"BackgroundCubeMaterial",uniforms:Tr(xi.backgroundCube.uniforms),vertexShader:xi.backgroundCube.vertexShader,fragmentShader:xi.backgroundCube.fragmentShader,side:Tn,depthTest:!1,depthWrite:!1,fog:!1})),u.geometry.deleteAttribute("normal"),u.geometry.deleteAttribute("uv"),u.onBeforeRender=function(D,L,I){this.matrixWorld.copyPosition(I.matrixWorld)},Object.defineProperty(u.material,"envMap",{get:function(){return this.uniforms.envMap.value}}),s.update(u)),vs.copy(w.backgroundRotation),vs.x*=-1,vs.y*=-1,vs.z*=-1,b.isCubeTexture&&b.isRenderTargetTexture===!1&&(vs.y*=-1,vs.z*=-1),u.material.uniforms.envMap.value=b,u.material.uniforms.flipEnvMap.value=b.isCubeTexture&&b.isRenderTargetTexture===!1?-1:1,u.material.uniforms.backgroundBlurriness.value=w.backgroundBlurriness,u.material.uniforms.backgroundIntensity.value=w.backgroundIntensity,u.material.uniforms.backgroundRotation.value.setFromMatrix4(Fx.makeRotationFromEuler(vs)),u.material.toneMapped=de.getTransfer(b.colorSpace)!==Ee,(f!==b||h!==b.version||d!==i.toneMapping)&&(u.material.needsUpdate=!0,f=b,h=b.version,d=i.toneMapping),u.layers.enableAll(),T.unshift(u,u.geometry,u.material,0,0,null)):b&&b.isTexture&&(c===void 0&&(c=new En(new Ma(2,2),new An({name:"BackgroundMaterial",uniforms:Tr(xi.background.uniforms),vertexShader:xi.background.vertexShader,fragmentShader:xi.background.fragmentShader,side:is,depthTest:!1,depthWrite:!1,fog:!1})),c.geometry.deleteAttribute("normal"),Object.defineProperty(c.material,"map",{get:function(){return this.uniforms.t2D.value}}),s.update(c)),c.material.uniforms.t2D.value=b,c.material.uniforms.backgroundIntensity.value=w.backgroundIntensity,c.material.toneMapped=de.getTransfer(b.colorSpace)!==Ee,b.matrixAutoUpdate===!0&&b.updateMatrix(),c.material.uniforms.uvTransform.value.copy(b.matrix),(f!==b||h!==b.version||d!==i.toneMapping)&&(c.material.needsUpdate=!0,f=b,h=b.version,d=i.toneMapping),c.layers.enableAll(),T.unshift(c,c.geometry,c.material,0,0,null))}function p(T,w){T.getRGB(Jo,ud(i)),n.buffers.color.setClear(Jo.r,Jo.g,Jo.b,w,o)}return{getClearColor:function(){return a},setClearColor:function(T,w=1){a.set(T),l=w,p(a,l)},getClearAlpha:function(){return l},setClearAlpha:function(T){l=T,p(a,l)},render:x,addToRenderList:m}}function kx(i,t){let e=i.getParameter(i.MAX_VERTEX_ATTRIBS),n={},s=h(null),r=s,o=!1;function a(M,C,W,V,Y){let j=!1,Z=f(V,W,C);r!==Z&&(r=Z,c(r.object)),j=d(M,V,W,Y),j&&_(M,V,W,Y),Y!==null&&t.update(Y,i.ELEMENT_ARRAY_BUFFER),(j||o)&&(o=!1,b(M,C,W,V),Y!==null&&i.bindBuffer(i.ELEMENT_ARRAY_BUFFER,t.get(Y).buffer))}function l(){return i.createVertexArray()}function c(M){return i.bindVertexArray(M)}function u(M){return i.deleteVertexArray(M)}function f(M,C,W){let V=W.wireframe===!0,Y=n[M.id];Y===void 0&&(Y={},n[M.id]=Y);let j=Y[C.id];j===void 0&&(j={},Y[C.id]=j);let Z=j[V];return Z===void 0&&(Z=h(l()),j[V]=Z),Z}function h(M){let C=[],W=[],V=[];for(let Y=0;Y<e;Y++)C[Y]=0,W[Y]=0,V[Y]=0;return{geometry:null,program:null,wireframe:!1,newAttributes:C,enabledAttributes:W,attributeDivisors:V,object:M,attributes:{},index:null}}function d(M,C,W,V){let Y=r.attributes,j=C.attributes,Z=0,et=W.getAttributes();for(let K in et)if(et[K].location>=0){let ot=Y[K],mt=j[K];if(mt===void 0&&(K==="instanceMatrix"&&M.instanceMatrix&&(mt=M.instanceMatrix),K==="instanceColor"&&M.instanceColor&&(mt=M.instanceColor)),ot===void 0||ot.attribute!==mt||mt&&ot.data!==mt.data)return!0;Z++}return r.attributesNum!==Z||r.index!==V}function _(M,C,W,V){let Y={},j=C.attributes,Z=0,et=W.getAttributes();for(let K in et)if(et[K].location>=0){let ot=j[K];ot===void 0&&(K==="instanceMatrix"&&M.instanceMatrix&&(ot=M.instanceMatrix),K==="instanceColor"&&M.instanceColor&&(ot=M.instanceColor));let mt={};mt.attribute=ot,ot&&ot.data&&(mt.data=ot.data),Y[K]=mt,Z++}r.attributes=Y,r.attributesNum=Z,r.index=V}function x(){let M=r.newAttributes;for(let C=0,W=M.length;C<W;C++)M[C]=0}function m(M){p(M,0)}function p(M,C){let W=r.newAttributes,V=r.enabledAttributes,Y=r.attributeDivisors;W[M]=1,V[M]===0&&(i.enableVertexAttribArray(M),V[M]=1),Y[M]!==C&&(i.vertexAttribDivisor(M,C),Y[M]=C)}function T(){let M=r.newAttributes,C=r.enabledAttributes;for(let W=0,V=C.length;W<V;W++)C[W]!==M[W]&&(i.disableVertexAttribArray(W),C[W]=0)}function w(M,C,W,V,Y,j,Z){Z===!0?i.vertexAttribIPointer(M,C,W,Y,j):i.vertexAttribPointer(M,C,W,V,Y,j)}function b(M,C,W,V){x();let Y=V.attributes,j=W.getAttributes(),Z=C.defaultAttributeValues;for(let et in j){let K=j[et];if(K.location>=0){let ht=Y[et];if(ht===void 0&&(et==="instanceMatrix"&&M.instanceMatrix&&(ht=M.instanceMatrix),et==="instanceColor"&&M.instanceColor&&(ht=M.instanceColor)),ht!==void 0){let ot=ht.normalized,mt=ht.itemSize,dt=t.get(ht);if(dt===void 0)continue;let Gt=dt.buffer,$=dt.type,ct=dt.bytesPerElement,It=$===i.INT||$===i.UNSIGNED_INT||ht.gpuType===_h;if(ht.isInterleavedBufferAttribute){let ut=ht.data,Dt=ut.stride,Ht=ht.offset;if(ut.isInstancedInterleavedBuffer){for(let zt=0;zt<K.locationSize;zt++)p(K.location+zt,ut.meshPerAttribute);M.isInstancedMesh!==!0&&V._maxInstanceCount===void 0&&(V._maxInstanceCount=ut.meshPerAttribute*ut.count)}else for(let zt=0;zt<K.locationSize;zt++)m(K.location+zt);i.bindBuffer(i.ARRAY_BUFFER,Gt);for(let zt=0;zt<K.locationSize;zt++)w(K.location+zt,mt/K.locationSize,$,ot,Dt*ct,(Ht+mt/K.locationSize*zt)*ct,It)}else{if(ht.isInstancedBufferAttribute){for(let ut=0;ut<K.locationSize;ut++)p(K.location+ut,ht.meshPerAttribute);M.isInstancedMesh!==!0&&V._maxInstanceCount===void 0&&(V._maxInstanceCount=ht.meshPerAttribute*ht.count)}else for(let ut=0;ut<K.locationSize;ut++)m(K.location+ut);i.bindBuffer(i.ARRAY_BUFFER,Gt);for(let ut=0;ut<K.locationSize;ut++)w(K.location+ut,mt/K.locationSize,$,ot,mt*ct,mt/K.locationSize*ut*ct,It)}}else if(Z!==void 0){let ot=Z[et];if(ot!==void 0)switch(ot.length){case 2:i.vertexAttrib2fv(K.location,ot);break;case 3:i.vertexAttrib3fv(K.location,ot);break;case 4:i.vertexAttrib4fv(K.location,ot);break;default:i.vertexAttrib1fv(K.location,ot)}}}}T()}function D(){N();for(let M in n){let C=n[M];for(let W in C){let V=C[W];for(let Y in V)u(V[Y].object),delete V[Y];delete C[W]}delete n[M]}}function L(M){if(n[M.id]===void 0)return;let C=n[M.id];for(let W in C){let V=C[W];for(let Y in V)u(V[Y].object),delete V[Y];delete C[W]}delete n[M.id]}function I(M){for(let C in n){let W=n[C];if(W[M.id]===void 0)continue;let V=W[M.id];for(let Y in V)u(V[Y].object),delete V[Y];delete W[M.id]}}function N(){E(),o=!0,r!==s&&(r=s,c(r.object))}function E(){s.geometry=null,s.program=null,s.wireframe=!1}return{setup:a,reset:N,resetDefaultState:E,dispose:D,releaseStatesOfGeometry:L,releaseStatesOfProgram:I,initAttributes:x,enableAttribute:m,disableUnusedAttributes:T}}function zx(i,t,e){let n;function s(c){n=c}function r(c,u){i.drawArrays(n,c,u),e.update(u,n,1)}function o(c,u,f){f!==0&&(i.drawArraysInstanced(n,c,u,f),e.update(u,n,f))}function a(c,u,f){if(f===0)return;t.get("WEBGL_multi_draw").multiDrawArraysWEBGL(n,c,0,u,0,f);let d=0;for(let _=0;_<f;_++)d+=u[_];e.update(d,n,1)}function l(c,u,f,h){if(f===0)return;let d=t.get("WEBGL_multi_draw");if(d===null)for(let _=0;_<c.length;_++)o(c[_],u[_],h[_]);else{d.multiDrawArraysInstancedWEBGL(n,c,0,u,0,h,0,f);let _=0;for(let x=0;x<f;x++)_+=u[x]*h[x];e.update(_,n,1)}}this.setMode=s,this.render=r,this.renderInstances=o,this.renderMultiDraw=a,this.renderMultiDrawInstances=l}function Vx(i,t,e,n){let s;function r(){if(s!==void 0)return s;if(t.has("EXT_texture_filter_anisotropic")===!0){let I=t.get("EXT_texture_filter_anisotropic");s=i.getParameter(I.MAX_TEXTURE_MAX_ANISOTROPY_EXT)}else s=0;return s}function o(I){return!(I!==ri&&n.convert(I)!==i.getParameter(i.IMPLEMENTATION_COLOR_READ_FORMAT))}function a(I){let N=I===po&&(t.has("EXT_color_buffer_half_float")||t.has("EXT_color_buffer_float"));return!(I!==Oi&&n.convert(I)!==i.getParameter(i.IMPLEMENTATION_COLOR_READ_TYPE)&&I!==Di&&!N)}function l(I){if(I==="highp"){if(i.getShaderPrecisionFormat(i.VERTEX_SHADER,i.HIGH_FLOAT).precision>0&&i.getShaderPrecisionFormat(i.FRAGMENT_SHADER,i.HIGH_FLOAT).precision>0)return"highp";I="mediump"}return I==="mediump"&&i.getShaderPrecisionFormat(i.VERTEX_SHADER,i.MEDIUM_FLOAT).precision>0&&i.getShaderPrecisionFormat(i.FRAGMENT_SHADER,i.MEDIUM_FLOAT).precision>0?"mediump":"lowp"}let c=e.precision!==void 0?e.precision:"highp",u=l(c);u!==c&&(console.warn("THREE.WebGLRenderer:",c,"not supported, using",u,"instead."),c=u);let f=e.logarithmicDepthBuffer===!0,h=e.reverseDepthBuffer===!0&&t.has("EXT_clip_control"),d=i.getParameter(i.MAX_TEXTURE_IMAGE_UNITS),_=i.getParameter(i.MAX_VERTEX_TEXTURE_IMAGE_UNITS),x=i.getParameter(i.MAX_TEXTURE_SIZE),m=i.getParameter(i.MAX_CUBE_MAP_TEXTURE_SIZE),p=i.getParameter(i.MAX_VERTEX_ATTRIBS),T=i.getParameter(i.MAX_VERTEX_UNIFORM_VECTORS),w=i.getParameter(i.MAX_VARYING_VECTORS),b=i.getParameter(i.MAX_FRAGMENT_UNIFORM_VECTORS),D=_>0,L=i.getParameter(i.MAX_SAMPLES);return{isWebGL2:!0,getMaxAnisotropy:r,getMaxPrecision:l,textureFormatReadable:o,textureTypeReadable:a,precision:c,logarithmicDepthBuffer:f,reverseDepthBuffer:h,maxTextures:d,maxVertexTextures:_,maxTextureSize:x,maxCubemapSize:m,maxAttributes:p,maxVertexUniforms:T,maxVaryings:w,maxFragmentUniforms:b,vertexTextures:D,maxSamples:L}}function Hx(i){let t=this,e=null,n=0,s=!1,r=!1,o=new ii,a=new te,l={value:null,needsUpdate:!1};this.uniform=l,this.numPlanes=0,this.numIntersection=0,this.init=function(f,h){let d=f.length!==0||h||n!==0||s;return s=h,n=f.length,d},this.beginShadows=function(){r=!0,u(null)},this.endShadows=function(){r=!1},this.setGlobalState=function(f,h){e=u(f,h,0)},this.setState=function(f,h,d){let _=f.clippingPlanes,x=f.clipIntersection,m=f.clipShadows,p=i.get(f);if(!s||_===null||_.length===0||r&&!m)r?u(null):c();else{let T=r?0:n,w=T*4,b=p.clippingState||null;l.value=b,b=u(_,h,w,d);for(let D=0;D!==w;++D)b[D]=e[D];p.clippingState=b,this.numIntersection=x?this.numPlanes:0,this.numPlanes+=T}};function c(){l.value!==e&&(l.value=e,l.needsUpdate=n>0),t.numPlanes=n,t.numIntersection=0}function u(f,h,d,_){let x=f!==null?f.length:0,m=null;if(x!==0){if(m=l.value,_!==!0||m===null){let p=d+x*4,T=h.matrixWorldInverse;a.getNormalMatrix(T),(m===null||m.length<p)&&(m=new Float32Array(p));for(let w=0,b=d;w!==x;++w,b+=4)o.copy(f[w]).applyMatrix4(T,a),o.normal.toArray(m,b),m[b+3]=o.constant}l.value=m,l.needsUpdate=!0}return t.numPlanes=x,t.numIntersection=0,m}}function Gx(i){let t=new WeakMap;function e(o,a){return a===cc?o.mapping=Sr:a===hc&&(o.mapping=br),o}function n(o){if(o&&o.isTexture){let a=o.mapping;if(a===cc||a===hc)if(t.has(o)){let l=t.get(o).texture;return e(l,o.mapping)}else{let l=o.image;if(l&&l.height>0){let c=new Wc(l.height);return c.fromEquirectangularTexture(i,o),t.set(o,c),o.addEventListener("dispose",s),e(c.texture,o.mapping)}else return null}}return o}function s(o){let a=o.target;a.removeEventListener("dispose",s);let l=t.get(a);l!==void 0&&(t.delete(a),l.dispose())}function r(){t=new WeakMap}return{get:n,dispose:r}}var ho=class extends xa{constructor(t=-1,e=1,n=1,s=-1,r=.1,o=2e3){super(),this.isOrthographicCamera=!0,this.type="OrthographicCamera",this.zoom=1,this.view=null,this.left=t,this.right=e,this.top=n,this.bottom=s,this.near=r,this.far=o,this.updateProjectionMatrix()}copy(t,e){return super.copy(t,e),this.left=t.left,this.right=t.right,this.top=t.top,this.bottom=t.bottom,this.near=t.near,this.far=t.far,this.zoom=t.zoom,this.view=t.view===null?null:Object.assign({},t.view),this}setViewOffset(t,e,n,s,r,o){this.view===null&&(this.view={enabled:!0,fullWidth:1,fullHeight:1,offsetX:0,offsetY:0,width:1,height:1}),this.view.enabled=!0,this.view.fullWidth=t,this.view.fullHeight=e,this.view.offsetX=n,this.view.offsetY=s,this.view.width=r,this.view.height=o,this.updateProjectionMatrix()}clearViewOffset(){this.view!==null&&(this.view.enabled=!1),this.updateProjectionMatrix()}updateProjectionMatrix(){let t=(this.right-this.left)/(2*this.zoom),e=(this.top-this.bottom)/(2*this.zoom),n=(this.right+this.left)/2,s=(this.top+this.bottom)/2,r=n-t,o=n+t,a=s+e,l=s-e;if(this.view!==null&&this.view.enabled){let c=(this.right-this.left)/this.view.fullWidth/this.zoom,u=(this.top-this.bottom)/this.view.fullHeight/this.zoom;r+=c*this.view.offsetX,o=r+c*this.view.width,a-=u*this.view.offsetY,l=a-u*this.view.height}this.projectionMatrix.makeOrthographic(r,o,a,l,this.near,this.far,this.coordinateSystem),this.projectionMatrixInverse.copy(this.projectionMatrix).invert()}toJSON(t){let e=super.toJSON(t);return e.object.zoom=this.zoom,e.object.left=this.left,e.object.right=this.right,e.object.top=this.top,e.object.bottom=this.bottom,e.object.near=this.near,e.object.far=this.far,this.view!==null&&(e.object.view=Object.assign({},this.view)),e}},mr=4,xf=[.125,.215,.35,.446,.526,.582],ws=20,ql=new ho,vf=new pe,$l=null,Zl=0,Jl=0,Kl=!1,Ms=(1+Math.sqrt(5))/2,dr=1/Ms,yf=[new H(-Ms,dr,0),new H(Ms,dr,0),new H(-dr,0,Ms),new H(dr,0,Ms),new H(0,Ms,-dr),new H(0,Ms,dr),new H(-1,1,-1),new H(1,1,-1),new H(-1,1,1),new H(1,1,1)],Sa=class{constructor(t){this._renderer=t,this._pingPongRenderTarget=null,this._lodMax=0,this._cubeSize=0,this._lodPlanes=[],this._sizeLods=[],this._sigmas=[],this._blurMaterial=null,this._cubemapMaterial=null,this._equirectMaterial=null,this._compileMaterial(this._blurMaterial)}fromScene(t,e=0,n=.1,s=100){$l=this._renderer.getRenderTarget(),Zl=this._renderer.getActiveCubeFace(),Jl=this._renderer.getActiveMipmapLevel(),Kl=this._renderer.xr.enabled,this._renderer.xr.enabled=!1,this._setSize(256);let r=this._allocateTargets();return r.depthBuffer=!0,this._sceneToCubeUV(t,n,s,r),e>0&&this._blur(r,0,0,e),this._applyPMREM(r),this._cleanup(r),r}fromEquirectangular(t,e=null){return this._fromTexture(t,e)}fromCubemap(t,e=null){return this._fromTexture(t,e)}compileCubemapShader(){this._cubemapMaterial===null&&(this._cubemapMaterial=bf(),this._compileMaterial(this._cubemapMaterial))}compileEquirectangularShader(){this._equirectMaterial===null&&(this._equirectMaterial=Sf(),this._compileMaterial(this._equirectMaterial))}dispose(){this._dispose(),this._cubemapMaterial!==null&&this._cubemapMaterial.dispose(),this._equirectMaterial!==null&&this._equirectMaterial.dispose()}_setSize(t){this._lodMax=Math.floor(Math.log2(t)),this._cubeSize=Math.pow(2,this._lodMax)}_dispose(){this._blurMaterial!==null&&this._blurMaterial.dispose(),this._pingPongRenderTarget!==null&&this._pingPongRenderTarget.dispose();for(let t=0;t<this._lodPlanes.length;t++)this._lodPlanes[t].dispose()}_cleanup(t){this._renderer.setRenderTarget($l,Zl,Jl),this._renderer.xr.enabled=Kl,t.scissorTest=!1,Ko(t,0,0,t.width,t.height)}_fromTexture(t,e){t.mapping===Sr||t.mapping===br?this._setSize(t.image.length===0?16:t.image[0].width||t.image[0].image.width):this._setSize(t.image.width/4),$l=this._renderer.getRenderTarget(),Zl=this._renderer.getActiveCubeFace(),Jl=this._renderer.getActiveMipmapLevel(),Kl=this._renderer.xr.enabled,this._renderer.xr.enabled=!1;let n=e||this._allocateTargets();return this._textureToCubeUV(t,n),this._applyPMREM(n),this._cleanup(n),n}_allocateTargets(){let t=3*Math.max(this._cubeSize,112),e=4*this._cubeSize,n={magFilter:qn,minFilter:qn,generateMipmaps:!1,type:po,format:ri,colorSpace:rs,depthBuffer:!1},s=Mf(t,e,n);if(this._pingPongRenderTarget===null||this._pingPongRenderTarget.width!==t||this._pingPongRenderTarget.height!==e){this._pingPongRenderTarget!==null&&this._dispose(),this._pingPongRenderTarget=Mf(t,e,n);let{_lodMax:r}=this;({sizeLods:this._sizeLods,lodPlanes:this._lodPlanes,sigmas:this._sigmas}=Wx(r)),this._blurMaterial=Xx(r,t,e)}return s}_compileMaterial(t){let e=new En(this._lodPlanes[0],t);this._renderer.compile(e,ql)}_sceneToCubeUV(t,e,n,s){let a=new Nn(90,1,e,n),l=[1,-1,1,1,1,1],c=[1,1,1,-1,-1,-1],u=this._renderer,f=u.autoClear,h=u.toneMapping;u.getClearColor(vf),u.toneMapping=ns,u.autoClear=!1;let d=new ma({name:"PMREM.Background",side:Tn,depthWrite:!1,depthTest:!1}),_=new En(new co,d),x=!1,m=t.background;m?m.isColor&&(d.color.copy(m),t.background=null,x=!0):(d.color.copy(vf),x=!0);for(let p=0;p<6;p++){let T=p%3;T===0?(a.up.set(0,l[p],0),a.lookAt(c[p],0,0)):T===1?(a.up.set(0,0,l[p]),a.lookAt(0,c[p],0)):(a.up.set(0,l[p],0),a.lookAt(0,0,c[p]));let w=this._cubeSize;Ko(s,T*w,p>2?w:0,w,w),u.setRenderTarget(s),x&&u.render(_,a),u.render(t,a)}_.geometry.dispose(),_.material.dispose(),u.toneMapping=h,u.autoClear=f,t.background=m}_textureToCubeUV(t,e){let n=this._renderer,s=t.mapping===Sr||t.mapping===br;s?(this._cubemapMaterial===null&&(this._cubemapMaterial=bf()),this._cubemapMaterial.uniforms.flipEnvMap.value=t.isRenderTargetTexture===!1?-1:1):this._equirectMaterial===null&&(this._equirectMaterial=Sf());let r=s?this._cubemapMaterial:this._equirectMaterial,o=new En(this._lodPlanes[0],r),a=r.uniforms;a.envMap.value=t;let l=this._cubeSize;Ko(e,0,0,3*l,2*l),n.setRenderTarget(e),n.render(o,ql)}_applyPMREM(t){let e=this._renderer,n=e.autoClear;e.autoClear=!1;let s=this._lodPlanes.length;for(let r=1;r<s;r++){let o=Math.sqrt(this._sigmas[r]*this._sigmas[r]-this._sigmas[r-1]*this._sigmas[r-1]),a=yf[(s-r-1)%yf.length];this._blur(t,r-1,r,o,a)}e.autoClear=n}_blur(t,e,n,s,r){let o=this._pingPongRenderTarget;this._halfBlur(t,o,e,n,s,"latitudinal",r),this._halfBlur(o,t,n,n,s,"longitudinal",r)}_halfBlur(t,e,n,s,r,o,a){let l=this._renderer,c=this._blurMaterial;o!=="latitudinal"&&o!=="longitudinal"&&console.error("blur direction must be either latitudinal or longitudinal!");let u=3,f=new En(this._lodPlanes[s],c),h=c.uniforms,d=this._sizeLods[n]-1,_=isFinite(r)?Math.PI/(2*d):2*Math.PI/(2*ws-1),x=r/_,m=isFinite(r)?1+Math.floor(u*x):ws;m>ws&&console.warn(`sigmaRadians, ${r}, is too large and will clip, as it requested ${m} samples when the maximum is set to ${ws}`);let p=[],T=0;for(let I=0;I<ws;++I){let N=I/x,E=Math.exp(-N*N/2);p.push(E),I===0?T+=E:I<m&&(T+=2*E)}for(let I=0;I<p.length;I++)p[I]=p[I]/T;h.envMap.value=t.texture,h.samples.value=m,h.weights.value=p,h.latitudinal.value=o==="latitudinal",a&&(h.poleAxis.value=a);let{_lodMax:w}=this;h.dTheta.value=_,h.mipInt.value=w-n;let b=this._sizeLods[s],D=3*b*(s>w-mr?s-w+mr:0),L=4*(this._cubeSize-b);Ko(e,D,L,3*b,2*b),l.setRenderTarget(e),l.render(f,ql)}};function Wx(i){let t=[],e=[],n=[],s=i,r=i-mr+1+xf.length;for(let o=0;o<r;o++){let a=Math.pow(2,s);e.push(a);let l=1/a;o>i-mr?l=xf[o-i+mr-1]:o===0&&(l=0),n.push(l);let c=1/(a-2),u=-c,f=1+c,h=[u,u,f,u,f,f,u,u,f,f,u,f],d=6,_=6,x=3,m=2,p=1,T=new Float32Array(x*_*d),w=new Float32Array(m*_*d),b=new Float32Array(p*_*d);for(let L=0;L<d;L++){let I=L%3*2/3-1,N=L>2?0:-1,E=[I,N,0,I+2/3,N,0,I+2/3,N+1,0,I,N,0,I+2/3,N+1,0,I,N+1,0];T.set(E,x*_*L),w.set(h,m*_*L);let M=[L,L,L,L,L,L];b.set(M,p*_*L)}let D=new cn;D.setAttribute("position",new Be(T,x)),D.setAttribute("uv",new Be(w,m)),D.setAttribute("faceIndex",new Be(b,p)),t.push(D),s>mr&&s--}return{lodPlanes:t,sizeLods:e,sigmas:n}}function Mf(i,t,e){let n=new Bi(i,t,e);return n.texture.mapping=La,n.texture.name="PMREM.cubeUv",n.scissorTest=!0,n}function Ko(i,t,e,n,s){i.viewport.set(t,e,n,s),i.scissor.set(t,e,n,s)}function Xx(i,t,e){let n=new Float32Array(ws),s=new H(0,1,0);return new An({name:"SphericalGaussianBlur",defines:{n:ws,CUBEUV_TEXEL_WIDTH:1/t,CUBEUV_TEXEL_HEIGHT:1/e,CUBEUV_MAX_MIP:`${i}.0`},uniforms:{envMap:{value:null},samples:{value:1},weights:{value:n},latitudinal:{value:!1},dTheta:{value:0},mipInt:{value:0},poleAxis:{value:s}},vertexShader:wh(),fragmentShader:`

			precision mediump float;
			precision mediump int;

			varying vec3 vOutputDirection;

			uniform sampler2D envMap;
			uniform int samples;
			uniform float weights[ n ];
			uniform bool latitudinal;
			uniform float dTheta;
			uniform float mipInt;
			uniform vec3 poleAxis;

			#define ENVMAP_TYPE_CUBE_UV
			#include <cube_uv_reflection_fragment>

			vec3 getSample( float theta, vec3 axis ) {

				float cosTheta = cos( theta );
				// Rodrigues' axis-angle rotation
				vec3 sampleDirection = vOutputDirection * cosTheta
					+ cross( axis, vOutputDirection ) * sin( theta )
					+ axis * dot( axis, vOutputDirection ) * ( 1.0 - cosTheta );

				return bilinearCubeUV( envMap, sampleDirection, mipInt );

			}

			void main() {

				vec3 axis = latitudinal ? poleAxis : cross( poleAxis, vOutputDirection );

				if ( all( equal( axis, vec3( 0.0 ) ) ) ) {

					axis = vec3( vOutputDirection.z, 0.0, - vOutputDirection.x );

				}

				axis = normalize( axis );

				gl_FragColor = vec4( 0.0, 0.0, 0.0, 1.0 );
				gl_FragColor.rgb += weights[ 0 ] * getSample( 0.0, axis );

				for ( int i = 1; i < n; i++ ) {

					if ( i >= samples ) {

						break;

					}

					float theta = dTheta * float( i );
					gl_FragColor.rgb += weights[ i ] * getSample( -1.0 * theta, axis );
					gl_FragColor.rgb += weights[ i ] * getSample( theta, axis );

				}

			}
		`,blending:es,depthTest:!1,depthWrite:!1})}function Sf(){return new An({name:"EquirectangularToCubeUV",uniforms:{envMap:{value:null}},vertexShader:wh(),fragmentShader:`

			precision mediump float;
			precision mediump int;

			varying vec3 vOutputDirection;

			uniform sampler2D envMap;

			#include <common>

			void main() {

				vec3 outputDirection = normalize( vOutputDirection );
				vec2 uv = equirectUv( outputDirection );

				gl_FragColor = vec4( texture2D ( envMap, uv ).rgb, 1.0 );

			}
		`,blending:es,depthTest:!1,depthWrite:!1})}function bf(){return new An({name:"CubemapToCubeUV",uniforms:{envMap:{value:null},flipEnvMap:{value:-1}},vertexShader:wh(),fragmentShader:`

			precision mediump float;
			precision mediump int;

			uniform float flipEnvMap;

			varying vec3 vOutputDirection;

			uniform samplerCube envMap;

			void main() {

				gl_FragColor = textureCube( envMap, vec3( flipEnvMap * vOutputDirection.x, vOutputDirection.yz ) );

			}
		`,blending:es,depthTest:!1,depthWrite:!1})}function wh(){return`

		precision mediump float;
		precision mediump int;

		attribute float faceIndex;

		varying vec3 vOutputDirection;

		// RH coordinate system; PMREM face-indexing convention
		vec3 getDirection( vec2 uv, float face ) {

			uv = 2.0 * uv - 1.0;

			vec3 direction = vec3( uv, 1.0 );

			if ( face == 0.0 ) {

				direction = direction.zyx; // ( 1, v, u ) pos x

			} else if ( face == 1.0 ) {

				direction = direction.xzy;
				direction.xz *= -1.0; // ( -u, 1, -v ) pos y

			} else if ( face == 2.0 ) {

				direction.x *= -1.0; // ( -u, v, 1 ) pos z

			} else if ( face == 3.0 ) {

				direction = direction.zyx;
				direction.xz *= -1.0; // ( -1, v, -u ) neg x

			} else if ( face == 4.0 ) {

				direction = direction.xzy;
				direction.xy *= -1.0; // ( -u, -1, v ) neg y

			} else if ( face == 5.0 ) {

				direction.z *= -1.0; // ( u, v, -1 ) neg z

			}

			return direction;

		}

		void main() {

			vOutputDirection = getDirection( uv, faceIndex );
			gl_Position = vec4( position, 1.0 );

		}
	`}function Yx(i){let t=new WeakMap,e=null;function n(a){if(a&&a.isTexture){let l=a.mapping,c=l===cc||l===hc,u=l===Sr||l===br;if(c||u){let f=t.get(a),h=f!==void 0?f.texture.pmremVersion:0;if(a.isRenderTargetTexture&&a.pmremVersion!==h)return e===null&&(e=new Sa(i)),f=c?e.fromEquirectangular(a,f):e.fromCubemap(a,f),f.texture.pmremVersion=a.pmremVersion,t.set(a,f),f.texture;if(f!==void 0)return f.texture;{let d=a.image;return c&&d&&d.height>0||u&&d&&s(d)?(e===null&&(e=new Sa(i)),f=c?e.fromEquirectangular(a):e.fromCubemap(a),f.texture.pmremVersion=a.pmremVersion,t.set(a,f),a.addEventListener("dispose",r),f.texture):null}}}return a}function s(a){let l=0,c=6;for(let u=0;u<c;u++)a[u]!==void 0&&l++;return l===c}function r(a){let l=a.target;l.removeEventListener("dispose",r);let c=t.get(l);c!==void 0&&(t.delete(l),c.dispose())}function o(){t=new WeakMap,e!==null&&(e.dispose(),e=null)}return{get:n,dispose:o}}function qx(i){let t={};function e(n){if(t[n]!==void 0)return t[n];let s;switch(n){case"WEBGL_depth_texture":s=i.getExtension("WEBGL_depth_texture")||i.getExtension("MOZ_WEBGL_depth_texture")||i.getExtension("WEBKIT_WEBGL_depth_texture");break;case"EXT_texture_filter_anisotropic":s=i.getExtension("EXT_texture_filter_anisotropic")||i.getExtension("MOZ_EXT_texture_filter_anisotropic")||i.getExtension("WEBKIT_EXT_texture_filter_anisotropic");break;case"WEBGL_compressed_texture_s3tc":s=i.getExtension("WEBGL_compressed_texture_s3tc")||i.getExtension("MOZ_WEBGL_compressed_texture_s3tc")||i.getExtension("WEBKIT_WEBGL_compressed_texture_s3tc");break;case"WEBGL_compressed_texture_pvrtc":s=i.getExtension("WEBGL_compressed_texture_pvrtc")||i.getExtension("WEBKIT_WEBGL_compressed_texture_pvrtc");break;default:s=i.getExtension(n)}return t[n]=s,s}return{has:function(n){return e(n)!==null},init:function(){e("EXT_color_buffer_float"),e("WEBGL_clip_cull_distance"),e("OES_texture_float_linear"),e("EXT_color_buffer_half_float"),e("WEBGL_multisampled_render_to_texture"),e("WEBGL_render_shared_exponent")},get:function(n){let s=e(n);return s===null&&no("THREE.WebGLRenderer: "+n+" extension not supported."),s}}}function $x(i,t,e,n){let s={},r=new WeakMap;function o(f){let h=f.target;h.index!==null&&t.remove(h.index);for(let _ in h.attributes)t.remove(h.attributes[_]);for(let _ in h.morphAttributes){let x=h.morphAttributes[_];for(let m=0,p=x.length;m<p;m++)t.remove(x[m])}h.removeEventListener("dispose",o),delete s[h.id];let d=r.get(h);d&&(t.remove(d),r.delete(h)),n.releaseStatesOfGeometry(h),h.isInstancedBufferGeometry===!0&&delete h._maxInstanceCount,e.memory.geometries--}function a(f,h){return s[h.id]===!0||(h.addEventListener("dispose",o),s[h.id]=!0,e.memory.geometries++),h}function l(f){let h=f.attributes;for(let _ in h)t.update(h[_],i.ARRAY_BUFFER);let d=f.morphAttributes;for(let _ in d){let x=d[_];for(let m=0,p=x.length;m<p;m++)t.update(x[m],i.ARRAY_BUFFER)}}function c(f){let h=[],d=f.index,_=f.attributes.position,x=0;if(d!==null){let T=d.array;x=d.version;for(let w=0,b=T.length;w<b;w+=3){let D=T[w+0],L=T[w+1],I=T[w+2];h.push(D,L,L,I,I,D)}}else if(_!==void 0){let T=_.array;x=_.version;for(let w=0,b=T.length/3-1;w<b;w+=3){let D=w+0,L=w+1,I=w+2;h.push(D,L,L,I,I,D)}}else return;let m=new(cd(h)?_a:ga)(h,1);m.version=x;let p=r.get(f);p&&t.remove(p),r.set(f,m)}function u(f){let h=r.get(f);if(h){let d=f.index;d!==null&&h.version<d.version&&c(f)}else c(f);return r.get(f)}return{get:a,update:l,getWireframeAttribute:u}}function Zx(i,t,e){let n;function s(h){n=h}let r,o;function a(h){r=h.type,o=h.bytesPerElement}function l(h,d){i.drawElements(n,d,r,h*o),e.update(d,n,1)}function c(h,d,_){_!==0&&(i.drawElementsInstanced(n,d,r,h*o,_),e.update(d,n,_))}function u(h,d,_){if(_===0)return;t.get("WEBGL_multi_draw").multiDrawElementsWEBGL(n,d,0,r,h,0,_);let m=0;for(let p=0;p<_;p++)m+=d[p];e.update(m,n,1)}function f(h,d,_,x){if(_===0)return;let m=t.get("WEBGL_multi_draw");if(m===null)for(let p=0;p<h.length;p++)c(h[p]/o,d[p],x[p]);else{m.multiDrawElementsInstancedWEBGL(n,d,0,r,h,0,x,0,_);let p=0;for(let T=0;T<_;T++)p+=d[T]*x[T];e.update(p,n,1)}}this.setMode=s,this.setIndex=a,this.render=l,this.renderInstances=c,this.renderMultiDraw=u,this.renderMultiDrawInstances=f}function Jx(i){let t={geometries:0,textures:0},e={frame:0,calls:0,triangles:0,points:0,lines:0};function n(r,o,a){switch(e.calls++,o){case i.TRIANGLES:e.triangles+=a*(r/3);break;case i.LINES:e.lines+=a*(r/2);break;case i.LINE_STRIP:e.lines+=a*(r-1);break;case i.LINE_LOOP:e.lines+=a*r;break;case i.POINTS:e.points+=a*r;break;default:console.error("THREE.WebGLInfo: Unknown draw mode:",o);break}}function s(){e.calls=0,e.triangles=0,e.points=0,e.lines=0}return{memory:t,render:e,programs:null,autoReset:!0,reset:s,update:n}}function Kx(i,t,e){let n=new WeakMap,s=new De;function r(o,a,l){let c=o.morphTargetInfluences,u=a.morphAttributes.position||a.morphAttributes.normal||a.morphAttributes.color,f=u!==void 0?u.length:0,h=n.get(a);if(h===void 0||h.count!==f){let E=function(){I.dispose(),n.delete(a),a.removeEventListener("dispose",E)};h!==void 0&&h.texture.dispose();let d=a.morphAttributes.position!==void 0,_=a.morphAttributes.normal!==void 0,x=a.morphAttributes.color!==void 0,m=a.morphAttributes.position||[],p=a.morphAttributes.normal||[],T=a.morphAttributes.color||[],w=0;d===!0&&(w=1),_===!0&&(w=2),x===!0&&(w=3);let b=a.attributes.position.count*w,D=1;b>t.maxTextureSize&&(D=Math.ceil(b/t.maxTextureSize),b=t.maxTextureSize);let L=new Float32Array(b*D*4*f),I=new da(L,b,D,f);I.type=Di,I.needsUpdate=!0;let N=w*4;for(let M=0;M<f;M++){let C=m[M],W=p[M],V=T[M],Y=b*D*4*M;for(let j=0;j<C.count;j++){let Z=j*N;d===!0&&(s.fromBufferAttribute(C,j),L[Y+Z+0]=s.x,L[Y+Z+1]=s.y,L[Y+Z+2]=s.z,L[Y+Z+3]=0),_===!0&&(s.fromBufferAttribute(W,j),L[Y+Z+4]=s.x,L[Y+Z+5]=s.y,L[Y+Z+6]=s.z,L[Y+Z+7]=0),x===!0&&(s.fromBufferAttribute(V,j),L[Y+Z+8]=s.x,L[Y+Z+9]=s.y,L[Y+Z+10]=s.z,L[Y+Z+11]=V.itemSize===4?s.w:1)}}h={count:f,texture:I,size:new ie(b,D)},n.set(a,h),a.addEventListener("dispose",E)}if(o.isInstancedMesh===!0&&o.morphTexture!==null)l.getUniforms().setValue(i,"morphTexture",o.morphTexture,e);else{let d=0;for(let x=0;x<c.length;x++)d+=c[x];let _=a.morphTargetsRelative?1:1-d;l.getUniforms().setValue(i,"morphTargetBaseInfluence",_),l.getUniforms().setValue(i,"morphTargetInfluences",c)}l.getUniforms().setValue(i,"morphTargetsTexture",h.texture,e),l.getUniforms().setValue(i,"morphTargetsTextureSize",h.size)}return{update:r}}function jx(i,t,e,n){let s=new WeakMap;function r(l){let c=n.render.frame,u=l.geometry,f=t.get(l,u);if(s.get(f)!==c&&(t.update(f),s.set(f,c)),l.isInstancedMesh&&(l.hasEventListener("dispose",a)===!1&&l.addEventListener("dispose",a),s.get(l)!==c&&(e.update(l.instanceMatrix,i.ARRAY_BUFFER),l.instanceColor!==null&&e.update(l.instanceColor,i.ARRAY_BUFFER),s.set(l,c))),l.isSkinnedMesh){let h=l.skeleton;s.get(h)!==c&&(h.update(),s.set(h,c))}return f}function o(){s=new WeakMap}function a(l){let c=l.target;c.removeEventListener("dispose",a),e.remove(c.instanceMatrix),c.instanceColor!==null&&e.remove(c.instanceColor)}return{update:r,dispose:o}}var ba=class extends On{constructor(t,e,n,s,r,o,a,l,c,u=xr){if(u!==xr&&u!==Er)throw new Error("DepthTexture format must be either THREE.DepthFormat or THREE.DepthStencilFormat");n===void 0&&u===xr&&(n=As),n===void 0&&u===Er&&(n=wr),super(null,s,r,o,a,l,u,n,c),this.isDepthTexture=!0,this.image={width:t,height:e},this.magFilter=a!==void 0?a:Un,this.minFilter=l!==void 0?l:Un,this.flipY=!1,this.generateMipmaps=!1,this.compareFunction=null}copy(t){return super.copy(t),this.compareFunction=t.compareFunction,this}toJSON(t){let e=super.toJSON(t);return this.compareFunction!==null&&(e.compareFunction=this.compareFunction),e}},dd=new On,wf=new ba(1,1),pd=new da,md=new Hc,gd=new va,Ef=[],Tf=[],Af=new Float32Array(16),Cf=new Float32Array(9),Rf=new Float32Array(4);function Rr(i,t,e){let n=i[0];if(n<=0||n>0)return i;let s=t*e,r=Ef[s];if(r===void 0&&(r=new Float32Array(s),Ef[s]=r),t!==0){n.toArray(r,0);for(let o=1,a=0;o!==t;++o)a+=e,i[o].toArray(r,a)}return r}function Ze(i,t){if(i.length!==t.length)return!1;for(let e=0,n=i.length;e<n;e++)if(i[e]!==t[e])return!1;return!0}function Je(i,t){for(let e=0,n=t.length;e<n;e++)i[e]=t[e]}function Na(i,t){let e=Tf[t];e===void 0&&(e=new Int32Array(t),Tf[t]=e);for(let n=0;n!==t;++n)e[n]=i.allocateTextureUnit();return e}function Qx(i,t){let e=this.cache;e[0]!==t&&(i.uniform1f(this.addr,t),e[0]=t)}function tv(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y)&&(i.uniform2f(this.addr,t.x,t.y),e[0]=t.x,e[1]=t.y);else{if(Ze(e,t))return;i.uniform2fv(this.addr,t),Je(e,t)}}function ev(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z)&&(i.uniform3f(this.addr,t.x,t.y,t.z),e[0]=t.x,e[1]=t.y,e[2]=t.z);else if(t.r!==void 0)(e[0]!==t.r||e[1]!==t.g||e[2]!==t.b)&&(i.uniform3f(this.addr,t.r,t.g,t.b),e[0]=t.r,e[1]=t.g,e[2]=t.b);else{if(Ze(e,t))return;i.uniform3fv(this.addr,t),Je(e,t)}}function nv(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z||e[3]!==t.w)&&(i.uniform4f(this.addr,t.x,t.y,t.z,t.w),e[0]=t.x,e[1]=t.y,e[2]=t.z,e[3]=t.w);else{if(Ze(e,t))return;i.uniform4fv(this.addr,t),Je(e,t)}}function iv(i,t){let e=this.cache,n=t.elements;if(n===void 0){if(Ze(e,t))return;i.uniformMatrix2fv(this.addr,!1,t),Je(e,t)}else{if(Ze(e,n))return;Rf.set(n),i.uniformMatrix2fv(this.addr,!1,Rf),Je(e,n)}}function sv(i,t){let e=this.cache,n=t.elements;if(n===void 0){if(Ze(e,t))return;i.uniformMatrix3fv(this.addr,!1,t),Je(e,t)}else{if(Ze(e,n))return;Cf.set(n),i.uniformMatrix3fv(this.addr,!1,Cf),Je(e,n)}}function rv(i,t){let e=this.cache,n=t.elements;if(n===void 0){if(Ze(e,t))return;i.uniformMatrix4fv(this.addr,!1,t),Je(e,t)}else{if(Ze(e,n))return;Af.set(n),i.uniformMatrix4fv(this.addr,!1,Af),Je(e,n)}}function ov(i,t){let e=this.cache;e[0]!==t&&(i.uniform1i(this.addr,t),e[0]=t)}function av(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y)&&(i.uniform2i(this.addr,t.x,t.y),e[0]=t.x,e[1]=t.y);else{if(Ze(e,t))return;i.uniform2iv(this.addr,t),Je(e,t)}}function lv(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z)&&(i.uniform3i(this.addr,t.x,t.y,t.z),e[0]=t.x,e[1]=t.y,e[2]=t.z);else{if(Ze(e,t))return;i.uniform3iv(this.addr,t),Je(e,t)}}function cv(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z||e[3]!==t.w)&&(i.uniform4i(this.addr,t.x,t.y,t.z,t.w),e[0]=t.x,e[1]=t.y,e[2]=t.z,e[3]=t.w);else{if(Ze(e,t))return;i.uniform4iv(this.addr,t),Je(e,t)}}function hv(i,t){let e=this.cache;e[0]!==t&&(i.uniform1ui(this.addr,t),e[0]=t)}function uv(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y)&&(i.uniform2ui(this.addr,t.x,t.y),e[0]=t.x,e[1]=t.y);else{if(Ze(e,t))return;i.uniform2uiv(this.addr,t),Je(e,t)}}function fv(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z)&&(i.uniform3ui(this.addr,t.x,t.y,t.z),e[0]=t.x,e[1]=t.y,e[2]=t.z);else{if(Ze(e,t))return;i.uniform3uiv(this.addr,t),Je(e,t)}}function dv(i,t){let e=this.cache;if(t.x!==void 0)(e[0]!==t.x||e[1]!==t.y||e[2]!==t.z||e[3]!==t.w)&&(i.uniform4ui(this.addr,t.x,t.y,t.z,t.w),e[0]=t.x,e[1]=t.y,e[2]=t.z,e[3]=t.w);else{if(Ze(e,t))return;i.uniform4uiv(this.addr,t),Je(e,t)}}function pv(i,t,e){let n=this.cache,s=e.allocateTextureUnit();n[0]!==s&&(i.uniform1i(this.addr,s),n[0]=s);let r;this.type===i.SAMPLER_2D_SHADOW?(wf.compareFunction=ad,r=wf):r=dd,e.setTexture2D(t||r,s)}function mv(i,t,e){let n=this.cache,s=e.allocateTextureUnit();n[0]!==s&&(i.uniform1i(this.addr,s),n[0]=s),e.setTexture3D(t||md,s)}function gv(i,t,e){let n=this.cache,s=e.allocateTextureUnit();n[0]!==s&&(i.uniform1i(this.addr,s),n[0]=s),e.setTextureCube(t||gd,s)}function _v(i,t,e){let n=this.cache,s=e.allocateTextureUnit();n[0]!==s&&(i.uniform1i(this.addr,s),n[0]=s),e.setTexture2DArray(t||pd,s)}function xv(i){switch(i){case 5126:return Qx;case 35664:return tv;case 35665:return ev;case 35666:return nv;case 35674:return iv;case 35675:return sv;case 35676:return rv;case 5124:case 35670:return ov;case 35667:case 35671:return av;case 35668:case 35672:return lv;case 35669:case 35673:return cv;case 5125:return hv;case 36294:return uv;case 36295:return fv;case 36296:return dv;case 35678:case 36198:case 36298:case 36306:case 35682:return pv;case 35679:case 36299:case 36307:return mv;case 35680:case 36300:case 36308:case 36293:return gv;case 36289:case 36303:case 36311:case 36292:return _v}}function vv(i,t){i.uniform1fv(this.addr,t)}function yv(i,t){let e=Rr(t,this.size,2);i.uniform2fv(this.addr,e)}function Mv(i,t){let e=Rr(t,this.size,3);i.uniform3fv(this.addr,e)}function Sv(i,t){let e=Rr(t,this.size,4);i.uniform4fv(this.addr,e)}function bv(i,t){let e=Rr(t,this.size,4);i.uniformMatrix2fv(this.addr,!1,e)}function wv(i,t){let e=Rr(t,this.size,9);i.uniformMatrix3fv(this.addr,!1,e)}function Ev(i,t){let e=Rr(t,this.size,16);i.uniformMatrix4fv(this.addr,!1,e)}function Tv(i,t){i.uniform1iv(this.addr,t)}function Av(i,t){i.uniform2iv(this.addr,t)}function Cv(i,t){i.uniform3iv(this.addr,t)}function Rv(i,t){i.uniform4iv(this.addr,t)}function Pv(i,t){i.uniform1uiv(this.addr,t)}function Iv(i,t){i.uniform2uiv(this.addr,t)}function Lv(i,t){i.uniform3uiv(this.addr,t)}function Dv(i,t){i.uniform4uiv(this.addr,t)}function Nv(i,t,e){let n=this.cache,s=t.length,r=Na(e,s);Ze(n,r)||(i.uniform1iv(this.addr,r),Je(n,r));for(let o=0;o!==s;++o)e.setTexture2D(t[o]||dd,r[o])}function Uv(i,t,e){let n=this.cache,s=t.length,r=Na(e,s);Ze(n,r)||(i.uniform1iv(this.addr,r),Je(n,r));for(let o=0;o!==s;++o)e.setTexture3D(t[o]||md,r[o])}function Ov(i,t,e){let n=this.cache,s=t.length,r=Na(e,s);Ze(n,r)||(i.uniform1iv(this.addr,r),Je(n,r));for(let o=0;o!==s;++o)e.setTextureCube(t[o]||gd,r[o])}function Fv(i,t,e){let n=this.cache,s=t.length,r=Na(e,s);Ze(n,r)||(i.uniform1iv(this.addr,r),Je(n,r));for(let o=0;o!==s;++o)e.setTexture2DArray(t[o]||pd,r[o])}function Bv(i){switch(i){case 5126:return vv;case 35664:return yv;case 35665:return Mv;case 35666:return Sv;case 35674:return bv;case 35675:return wv;case 35676:return Ev;case 5124:case 35670:return Tv;case 35667:case 35671:return Av;case 35668:case 35672:return Cv;case 35669:case 35673:return Rv;case 5125:return Pv;case 36294:return Iv;case 36295:return Lv;case 36296:return Dv;case 35678:case 36198:case 36298:case 36306:case 35682:return Nv;case 35679:case 36299:case 36307:return Uv;case 35680:case 36300:case 36308:case 36293:return Ov;case 36289:case 36303:case 36311:case 36292:return Fv}}var Xc=class{constructor(t,e,n){this.id=t,this.addr=n,this.cache=[],this.type=e.type,this.setValue=xv(e.type)}},Yc=class{constructor(t,e,n){this.id=t,this.addr=n,this.cache=[],this.type=e.type,this.size=e.size,this.setValue=Bv(e.type)}},qc=class{constructor(t){this.id=t,this.seq=[],this.map={}}setValue(t,e,n){let s=this.seq;for(let r=0,o=s.length;r!==o;++r){let a=s[r];a.setValue(t,e[a.id],n)}}},jl=/(\w+)(\])?(\[|\.)?/g;function Pf(i,t){i.seq.push(t),i.map[t.id]=t}function kv(i,t,e){let n=i.name,s=n.length;for(jl.lastIndex=0;;){let r=jl.exec(n),o=jl.lastIndex,a=r[1],l=r[2]==="]",c=r[3];if(l&&(a=a|0),c===void 0||c==="["&&o+2===s){Pf(e,c===void 0?new Xc(a,i,t):new Yc(a,i,t));break}else{let f=e.map[a];f===void 0&&(f=new qc(a),Pf(e,f)),e=f}}}var yr=class{constructor(t,e){this.seq=[],this.map={};let n=t.getProgramParameter(e,t.ACTIVE_UNIFORMS);for(let s=0;s<n;++s){let r=t.getActiveUniform(e,s),o=t.getUniformLocation(e,r.name);kv(r,o,this)}}setValue(t,e,n,s){let r=this.map[e];r!==void 0&&r.setValue(t,n,s)}setOptional(t,e,n){let s=e[n];s!==void 0&&this.setValue(t,n,s)}static upload(t,e,n,s){for(let r=0,o=e.length;r!==o;++r){let a=e[r],l=n[a.id];l.needsUpdate!==!1&&a.setValue(t,l.value,s)}}static seqWithValue(t,e){let n=[];for(let s=0,r=t.length;s!==r;++s){let o=t[s];o.id in e&&n.push(o)}return n}};function If(i,t,e){let n=i.createShader(t);return i.shaderSource(n,e),i.compileShader(n),n}var zv=37297,Vv=0;function Hv(i,t){let e=i.split(`
`),n=[],s=Math.max(t-6,0),r=Math.min(t+6,e.length);for(let o=s;o<r;o++){let a=o+1;n.push(`${a===t?">":" "} ${a}: ${e[o]}`)}return n.join(`
`)}var Lf=new te;function Gv(i){de._getMatrix(Lf,de.workingColorSpace,i);let t=`mat3( ${Lf.elements.map(e=>e.toFixed(4))} )`;switch(de.getTransfer(i)){case Da:return[t,"LinearTransferOETF"];case Ee:return[t,"sRGBTransferOETF"];default:return console.warn("THREE.WebGLProgram: Unsupported color space: ",i),[t,"LinearTransferOETF"]}}function Df(i,t,e){let n=i.getShaderParameter(t,i.COMPILE_STATUS),s=i.getShaderInfoLog(t).trim();if(n&&s==="")return"";let r=/ERROR: 0:(\d+)/.exec(s);if(r){let o=parseInt(r[1]);return e.toUpperCase()+`

`+s+`

`+Hv(i.getShaderSource(t),o)}else return s}function Wv(i,t){let e=Gv(t);return[`vec4 ${i}( vec4 value ) {`,`	return ${e[1]}( vec4( value.rgb * ${e[0]}, value.a ) );`,"}"].join(`
`)}function Xv(i,t){let e;switch(t){case tg:e="Linear";break;case eg:e="Reinhard";break;case ng:e="Cineon";break;case ig:e="ACESFilmic";break;case rg:e="AgX";break;case og:e="Neutral";break;case sg:e="Custom";break;default:console.warn("THREE.WebGLProgram: Unsupported toneMapping:",t),e="Linear"}return"vec3 "+i+"( vec3 color ) { return "+e+"ToneMapping( color ); }"}var jo=new H;function Yv(){de.getLuminanceCoefficients(jo);let i=jo.x.toFixed(4),t=jo.y.toFixed(4),e=jo.z.toFixed(4);return["float luminance( const in vec3 rgb ) {",`	const vec3 weights = vec3( ${i}, ${t}, ${e} );`,"	return dot( weights, rgb );","}"].join(`
`)}function qv(i){return[i.extensionClipCullDistance?"#extension GL_ANGLE_clip_cull_distance : require":"",i.extensionMultiDraw?"#extension GL_ANGLE_multi_draw : require":""].filter(io).join(`
`)}function $v(i){let t=[];for(let e in i){let n=i[e];n!==!1&&t.push("#define "+e+" "+n)}return t.join(`
`)}function Zv(i,t){let e={},n=i.getProgramParameter(t,i.ACTIVE_ATTRIBUTES);for(let s=0;s<n;s++){let r=i.getActiveAttrib(t,s),o=r.name,a=1;r.type===i.FLOAT_MAT2&&(a=2),r.type===i.FLOAT_MAT3&&(a=3),r.type===i.FLOAT_MAT4&&(a=4),e[o]={type:r.type,location:i.getAttribLocation(t,o),locationSize:a}}return e}function io(i){return i!==""}function Nf(i,t){let e=t.numSpotLightShadows+t.numSpotLightMaps-t.numSpotLightShadowsWithMaps;return i.replace(/NUM_DIR_LIGHTS/g,t.numDirLights).replace(/NUM_SPOT_LIGHTS/g,t.numSpotLights).replace(/NUM_SPOT_LIGHT_MAPS/g,t.numSpotLightMaps).replace(/NUM_SPOT_LIGHT_COORDS/g,e).replace(/NUM_RECT_AREA_LIGHTS/g,t.numRectAreaLights).replace(/NUM_POINT_LIGHTS/g,t.numPointLights).replace(/NUM_HEMI_LIGHTS/g,t.numHemiLights).replace(/NUM_DIR_LIGHT_SHADOWS/g,t.numDirLightShadows).replace(/NUM_SPOT_LIGHT_SHADOWS_WITH_MAPS/g,t.numSpotLightShadowsWithMaps).replace(/NUM_SPOT_LIGHT_SHADOWS/g,t.numSpotLightShadows).replace(/NUM_POINT_LIGHT_SHADOWS/g,t.numPointLightShadows)}function Uf(i,t){return i.replace(/NUM_CLIPPING_PLANES/g,t.numClippingPlanes).replace(/UNION_CLIPPING_PLANES/g,t.numClippingPlanes-t.numClipIntersection)}var Jv=/^[ \t]*#include +<([\w\d./]+)>/gm;function $c(i){return i.replace(Jv,jv)}var Kv=new Map;function jv(i,t){let e=ne[t];if(e===void 0){let n=Kv.get(t);if(n!==void 0)e=ne[n],console.warn('THREE.WebGLRenderer: Shader chunk "%s" has been deprecated. Use "%s" instead.',t,n);else throw new Error("Can not resolve #include <"+t+">")}return $c(e)}var Qv=/#pragma unroll_loop_start\s+for\s*\(\s*int\s+i\s*=\s*(\d+)\s*;\s*i\s*<\s*(\d+)\s*;\s*i\s*\+\+\s*\)\s*{([\s\S]+?)}\s+#pragma unroll_loop_end/g;function Of(i){return i.replace(Qv,ty)}function ty(i,t,e,n){let s="";for(let r=parseInt(t);r<parseInt(e);r++)s+=n.replace(/\[\s*i\s*\]/g,"[ "+r+" ]").replace(/UNROLLED_LOOP_INDEX/g,r);return s}function Ff(i){let t=`precision ${i.precision} float;
	precision ${i.precision} int;
	precision ${i.precision} sampler2D;
	precision ${i.precision} samplerCube;
	precision ${i.precision} sampler3D;
	precision ${i.precision} sampler2DArray;
	precision ${i.precision} sampler2DShadow;
	precision ${i.precision} samplerCubeShadow;
	precision ${i.precision} sampler2DArrayShadow;
	precision ${i.precision} isampler2D;
	precision ${i.precision} isampler3D;
	precision ${i.precision} isamplerCube;
	precision ${i.precision} isampler2DArray;
	precision ${i.precision} usampler2D;
	precision ${i.precision} usampler3D;
	precision ${i.precision} usamplerCube;
	precision ${i.precision} usampler2DArray;
	`;return i.precision==="highp"?t+=`
#define HIGH_PRECISION`:i.precision==="mediump"?t+=`
#define MEDIUM_PRECISION`:i.precision==="lowp"&&(t+=`
#define LOW_PRECISION`),t}function ey(i){let t="SHADOWMAP_TYPE_BASIC";return i.shadowMapType===$f?t="SHADOWMAP_TYPE_PCF":i.shadowMapType===Dm?t="SHADOWMAP_TYPE_PCF_SOFT":i.shadowMapType===Li&&(t="SHADOWMAP_TYPE_VSM"),t}function ny(i){let t="ENVMAP_TYPE_CUBE";if(i.envMap)switch(i.envMapMode){case Sr:case br:t="ENVMAP_TYPE_CUBE";break;case La:t="ENVMAP_TYPE_CUBE_UV";break}return t}function iy(i){let t="ENVMAP_MODE_REFLECTION";if(i.envMap)switch(i.envMapMode){case br:t="ENVMAP_MODE_REFRACTION";break}return t}function sy(i){let t="ENVMAP_BLENDING_NONE";if(i.envMap)switch(i.combine){case Zf:t="ENVMAP_BLENDING_MULTIPLY";break;case jm:t="ENVMAP_BLENDING_MIX";break;case Qm:t="ENVMAP_BLENDING_ADD";break}return t}function ry(i){let t=i.envMapCubeUVHeight;if(t===null)return null;let e=Math.log2(t)-2,n=1/t;return{texelWidth:1/(3*Math.max(Math.pow(2,e),7*16)),texelHeight:n,maxMip:e}}function oy(i,t,e,n){let s=i.getContext(),r=e.defines,o=e.vertexShader,a=e.fragmentShader,l=ey(e),c=ny(e),u=iy(e),f=sy(e),h=ry(e),d=qv(e),_=$v(r),x=s.createProgram(),m,p,T=e.glslVersion?"#version "+e.glslVersion+`
`:"";e.isRawShaderMaterial?(m=["#define SHADER_TYPE "+e.shaderType,"#define SHADER_NAME "+e.shaderName,_].filter(io).join(`
`),m.length>0&&(m+=`
`),p=["#define SHADER_TYPE "+e.shaderType,"#define SHADER_NAME "+e.shaderName,_].filter(io).join(`
`),p.length>0&&(p+=`
`)):(m=[Ff(e),"#define SHADER_TYPE "+e.shaderType,"#define SHADER_NAME "+e.shaderName,_,e.extensionClipCullDistance?"#define USE_CLIP_DISTANCE":"",e.batching?"#define USE_BATCHING":"",e.batchingColor?"#define USE_BATCHING_COLOR":"",e.instancing?"#define USE_INSTANCING":"",e.instancingColor?"#define USE_INSTANCING_COLOR":"",e.instancingMorph?"#define USE_INSTANCING_MORPH":"",e.useFog&&e.fog?"#define USE_FOG":"",e.useFog&&e.fogExp2?"#define FOG_EXP2":"",e.map?"#define USE_MAP":"",e.envMap?"#define USE_ENVMAP":"",e.envMap?"#define "+u:"",e.lightMap?"#define USE_LIGHTMAP":"",e.aoMap?"#define USE_AOMAP":"",e.bumpMap?"#define USE_BUMPMAP":"",e.normalMap?"#define USE_NORMALMAP":"",e.normalMapObjectSpace?"#define USE_NORMALMAP_OBJECTSPACE":"",e.normalMapTangentSpace?"#define USE_NORMALMAP_TANGENTSPACE":"",e.displacementMap?"#define USE_DISPLACEMENTMAP":"",e.emissiveMap?"#define USE_EMISSIVEMAP":"",e.anisotropy?"#define USE_ANISOTROPY":"",e.anisotropyMap?"#define USE_ANISOTROPYMAP":"",e.clearcoatMap?"#define USE_CLEARCOATMAP":"",e.clearcoatRoughnessMap?"#define USE_CLEARCOAT_ROUGHNESSMAP":"",e.clearcoatNormalMap?"#define USE_CLEARCOAT_NORMALMAP":"",e.iridescenceMap?"#define USE_IRIDESCENCEMAP":"",e.iridescenceThicknessMap?"#define USE_IRIDESCENCE_THICKNESSMAP":"",e.specularMap?"#define USE_SPECULARMAP":"",e.specularColorMap?"#define USE_SPECULAR_COLORMAP":"",e.specularIntensityMap?"#define USE_SPECULAR_INTENSITYMAP":"",e.roughnessMap?"#define USE_ROUGHNESSMAP":"",e.metalnessMap?"#define USE_METALNESSMAP":"",e.alphaMap?"#define USE_ALPHAMAP":"",e.alphaHash?"#define USE_ALPHAHASH":"",e.transmission?"#define USE_TRANSMISSION":"",e.transmissionMap?"#define USE_TRANSMISSIONMAP":"",e.thicknessMap?"#define USE_THICKNESSMAP":"",e.sheenColorMap?"#define USE_SHEEN_COLORMAP":"",e.sheenRoughnessMap?"#define USE_SHEEN_ROUGHNESSMAP":"",e.mapUv?"#define MAP_UV "+e.mapUv:"",e.alphaMapUv?"#define ALPHAMAP_UV "+e.alphaMapUv:"",e.lightMapUv?"#define LIGHTMAP_UV "+e.lightMapUv:"",e.aoMapUv?"#define AOMAP_UV "+e.aoMapUv:"",e.emissiveMapUv?"#define EMISSIVEMAP_UV "+e.emissiveMapUv:"",e.bumpMapUv?"#define BUMPMAP_UV "+e.bumpMapUv:"",e.normalMapUv?"#define NORMALMAP_UV "+e.normalMapUv:"",e.displacementMapUv?"#define DISPLACEMENTMAP_UV "+e.displacementMapUv:"",e.metalnessMapUv?"#define METALNESSMAP_UV "+e.metalnessMapUv:"",e.roughnessMapUv?"#define ROUGHNESSMAP_UV "+e.roughnessMapUv:"",e.anisotropyMapUv?"#define ANISOTROPYMAP_UV "+e.anisotropyMapUv:"",e.clearcoatMapUv?"#define CLEARCOATMAP_UV "+e.clearcoatMapUv:"",e.clearcoatNormalMapUv?"#define CLEARCOAT_NORMALMAP_UV "+e.clearcoatNormalMapUv:"",e.clearcoatRoughnessMapUv?"#define CLEARCOAT_ROUGHNESSMAP_UV "+e.clearcoatRoughnessMapUv:"",e.iridescenceMapUv?"#define IRIDESCENCEMAP_UV "+e.iridescenceMapUv:"",e.iridescenceThicknessMapUv?"#define IRIDESCENCE_THICKNESSMAP_UV "+e.iridescenceThicknessMapUv:"",e.sheenColorMapUv?"#define SHEEN_COLORMAP_UV "+e.sheenColorMapUv:"",e.sheenRoughnessMapUv?"#define SHEEN_ROUGHNESSMAP_UV "+e.sheenRoughnessMapUv:"",e.specularMapUv?"#define SPECULARMAP_UV "+e.specularMapUv:"",e.specularColorMapUv?"#define SPECULAR_COLORMAP_UV "+e.specularColorMapUv:"",e.specularIntensityMapUv?"#define SPECULAR_INTENSITYMAP_UV "+e.specularIntensityMapUv:"",e.transmissionMapUv?"#define TRANSMISSIONMAP_UV "+e.transmissionMapUv:"",e.thicknessMapUv?"#define THICKNESSMAP_UV "+e.thicknessMapUv:"",e.vertexTangents&&e.flatShading===!1?"#define USE_TANGENT":"",e.vertexColors?"#define USE_COLOR":"",e.vertexAlphas?"#define USE_COLOR_ALPHA":"",e.vertexUv1s?"#define USE_UV1":"",e.vertexUv2s?"#define USE_UV2":"",e.vertexUv3s?"#define USE_UV3":"",e.pointsUvs?"#define USE_POINTS_UV":"",e.flatShading?"#define FLAT_SHADED":"",e.skinning?"#define USE_SKINNING":"",e.morphTargets?"#define USE_MORPHTARGETS":"",e.morphNormals&&e.flatShading===!1?"#define USE_MORPHNORMALS":"",e.morphColors?"#define USE_MORPHCOLORS":"",e.morphTargetsCount>0?"#define MORPHTARGETS_TEXTURE_STRIDE "+e.morphTextureStride:"",e.morphTargetsCount>0?"#define MORPHTARGETS_COUNT "+e.morphTargetsCount:"",e.doubleSided?"#define DOUBLE_SIDED":"",e.flipSided?"#define FLIP_SIDED":"",e.shadowMapEnabled?"#define USE_SHADOWMAP":"",e.shadowMapEnabled?"#define "+l:"",e.sizeAttenuation?"#define USE_SIZEATTENUATION":"",e.numLightProbes>0?"#define USE_LIGHT_PROBES":"",e.logarithmicDepthBuffer?"#define USE_LOGDEPTHBUF":"",e.reverseDepthBuffer?"#define USE_REVERSEDEPTHBUF":"","uniform mat4 modelMatrix;","uniform mat4 modelViewMatrix;","uniform mat4 projectionMatrix;","uniform mat4 viewMatrix;","uniform mat3 normalMatrix;","uniform vec3 cameraPosition;","uniform bool isOrthographic;","#ifdef USE_INSTANCING","	attribute mat4 instanceMatrix;","#endif","#ifdef USE_INSTANCING_COLOR","	attribute vec3 instanceColor;","#endif","#ifdef USE_INSTANCING_MORPH","	uniform sampler2D morphTexture;","#endif","attribute vec3 position;","attribute vec3 normal;","attribute vec2 uv;","#ifdef USE_UV1","	attribute vec2 uv1;","#endif","#ifdef USE_UV2","	attribute vec2 uv2;","#endif","#ifdef USE_UV3","	attribute vec2 uv3;","#endif","#ifdef USE_TANGENT","	attribute vec4 tangent;","#endif","#if defined( USE_COLOR_ALPHA )","	attribute vec4 color;","#elif defined( USE_COLOR )","	attribute vec3 color;","#endif","#ifdef USE_SKINNING","	attribute vec4 skinIndex;","	attribute vec4 skinWeight;","#endif",`
`].filter(io).join(`
`),p=[Ff(e),"#define SHADER_TYPE "+e.shaderType,"#define SHADER_NAME "+e.shaderName,_,e.useFog&&e.fog?"#define USE_FOG":"",e.useFog&&e.fogExp2?"#define FOG_EXP2":"",e.alphaToCoverage?"#define ALPHA_TO_COVERAGE":"",e.map?"#define USE_MAP":"",e.matcap?"#define USE_MATCAP":"",e.envMap?"#define USE_ENVMAP":"",e.envMap?"#define "+c:"",e.envMap?"#define "+u:"",e.envMap?"#define "+f:"",h?"#define CUBEUV_TEXEL_WIDTH "+h.texelWidth:"",h?"#define CUBEUV_TEXEL_HEIGHT "+h.texelHeight:"",h?"#define CUBEUV_MAX_MIP "+h.maxMip+".0":"",e.lightMap?"#define USE_LIGHTMAP":"",e.aoMap?"#define USE_AOMAP":"",e.bumpMap?"#define USE_BUMPMAP":"",e.normalMap?"#define USE_NORMALMAP":"",e.normalMapObjectSpace?"#define USE_NORMALMAP_OBJECTSPACE":"",e.normalMapTangentSpace?"#define USE_NORMALMAP_TANGENTSPACE":"",e.emissiveMap?"#define USE_EMISSIVEMAP":"",e.anisotropy?"#define USE_ANISOTROPY":"",e.anisotropyMap?"#define USE_ANISOTROPYMAP":"",e.clearcoat?"#define USE_CLEARCOAT":"",e.clearcoatMap?"#define USE_CLEARCOATMAP":"",e.clearcoatRoughnessMap?"#define USE_CLEARCOAT_ROUGHNESSMAP":"",e.clearcoatNormalMap?"#define USE_CLEARCOAT_NORMALMAP":"",e.dispersion?"#define USE_DISPERSION":"",e.iridescence?"#define USE_IRIDESCENCE":"",e.iridescenceMap?"#define USE_IRIDESCENCEMAP":"",e.iridescenceThicknessMap?"#define USE_IRIDESCENCE_THICKNESSMAP":"",e.specularMap?"#define USE_SPECULARMAP":"",e.specularColorMap?"#define USE_SPECULAR_COLORMAP":"",e.specularIntensityMap?"#define USE_SPECULAR_INTENSITYMAP":"",e.roughnessMap?"#define USE_ROUGHNESSMAP":"",e.metalnessMap?"#define USE_METALNESSMAP":"",e.alphaMap?"#define USE_ALPHAMAP":"",e.alphaTest?"#define USE_ALPHATEST":"",e.alphaHash?"#define USE_ALPHAHASH":"",e.sheen?"#define USE_SHEEN":"",e.sheenColorMap?"#define USE_SHEEN_COLORMAP":"",e.sheenRoughnessMap?"#define USE_SHEEN_ROUGHNESSMAP":"",e.transmission?"#define USE_TRANSMISSION":"",e.transmissionMap?"#define USE_TRANSMISSIONMAP":"",e.thicknessMap?"#define USE_THICKNESSMAP":"",e.vertexTangents&&e.flatShading===!1?"#define USE_TANGENT":"",e.vertexColors||e.instancingColor||e.batchingColor?"#define USE_COLOR":"",e.vertexAlphas?"#define USE_COLOR_ALPHA":"",e.vertexUv1s?"#define USE_UV1":"",e.vertexUv2s?"#define USE_UV2":"",e.vertexUv3s?"#define USE_UV3":"",e.pointsUvs?"#define USE_POINTS_UV":"",e.gradientMap?"#define USE_GRADIENTMAP":"",e.flatShading?"#define FLAT_SHADED":"",e.doubleSided?"#define DOUBLE_SIDED":"",e.flipSided?"#define FLIP_SIDED":"",e.shadowMapEnabled?"#define USE_SHADOWMAP":"",e.shadowMapEnabled?"#define "+l:"",e.premultipliedAlpha?"#define PREMULTIPLIED_ALPHA":"",e.numLightProbes>0?"#define USE_LIGHT_PROBES":"",e.decodeVideoTexture?"#define DECODE_VIDEO_TEXTURE":"",e.decodeVideoTextureEmissive?"#define DECODE_VIDEO_TEXTURE_EMISSIVE":"",e.logarithmicDepthBuffer?"#define USE_LOGDEPTHBUF":"",e.reverseDepthBuffer?"#define USE_REVERSEDEPTHBUF":"","uniform mat4 viewMatrix;","uniform vec3 cameraPosition;","uniform bool isOrthographic;",e.toneMapping!==ns?"#define TONE_MAPPING":"",e.toneMapping!==ns?ne.tonemapping_pars_fragment:"",e.toneMapping!==ns?Xv("toneMapping",e.toneMapping):"",e.dithering?"#define DITHERING":"",e.opaque?"#define OPAQUE":"",ne.colorspace_pars_fragment,Wv("linearToOutputTexel",e.outputColorSpace),Yv(),e.useDepthPacking?"#define DEPTH_PACKING "+e.depthPacking:"",`
`].filter(io).join(`
`)),o=$c(o),o=Nf(o,e),o=Uf(o,e),a=$c(a),a=Nf(a,e),a=Uf(a,e),o=Of(o),a=Of(a),e.isRawShaderMaterial!==!0&&(T=`#version 300 es
`,m=[d,"#define attribute in","#define varying out","#define texture2D texture"].join(`
`)+`
`+m,p=["#define varying in",e.glslVersion===Zu?"":"layout(location = 0) out highp vec4 pc_fragColor;",e.glslVersion===Zu?"":"#define gl_FragColor pc_fragColor","#define gl_FragDepthEXT gl_FragDepth","#define texture2D texture","#define textureCube texture","#define texture2DProj textureProj","#define texture2DLodEXT textureLod","#define texture2DProjLodEXT textureProjLod","#define textureCubeLodEXT textureLod","#define texture2DGradEXT textureGrad","#define texture2DProjGradEXT textureProjGrad","#define textureCubeGradEXT textureGrad"].join(`
`)+`
`+p);let w=T+m+o,b=T+p+a,D=If(s,s.VERTEX_SHADER,w),L=If(s,s.FRAGMENT_SHADER,b);s.attachShader(x,D),s.attachShader(x,L),e.index0AttributeName!==void 0?s.bindAttribLocation(x,0,e.index0AttributeName):e.morphTargets===!0&&s.bindAttribLocation(x,0,"position"),s.linkProgram(x);function I(C){if(i.debug.checkShaderErrors){let W=s.getProgramInfoLog(x).trim(),V=s.getShaderInfoLog(D).trim(),Y=s.getShaderInfoLog(L).trim(),j=!0,Z=!0;if(s.getProgramParameter(x,s.LINK_STATUS)===!1)if(j=!1,typeof i.debug.onShaderError=="function")i.debug.onShaderError(s,x,D,L);else{let et=Df(s,D,"vertex"),K=Df(s,L,"fragment");console.error("THREE.WebGLProgram: Shader Error "+s.getError()+" - VALIDATE_STATUS "+s.getProgramParameter(x,s.VALIDATE_STATUS)+`

Material Name: `+C.name+`
Material Type: `+C.type+`

Program Info Log: `+W+`
`+et+`
`+K)}else W!==""?console.warn("THREE.WebGLProgram: Program Info Log:",W):(V===""||Y==="")&&(Z=!1);Z&&(C.diagnostics={runnable:j,programLog:W,vertexShader:{log:V,prefix:m},fragmentShader:{log:Y,prefix:p}})}s.deleteShader(D),s.deleteShader(L),N=new yr(s,x),E=Zv(s,x)}let N;this.getUniforms=function(){return N===void 0&&I(this),N};let E;this.getAttributes=function(){return E===void 0&&I(this),E};let M=e.rendererExtensionParallelShaderCompile===!1;return this.isReady=function(){return M===!1&&(M=s.getProgramParameter(x,zv)),M},this.destroy=function(){n.releaseStatesOfProgram(this),s.deleteProgram(x),this.program=void 0},this.type=e.shaderType,this.name=e.shaderName,this.id=Vv++,this.cacheKey=t,this.usedTimes=1,this.program=x,this.vertexShader=D,this.fragmentShader=L,this}var ay=0,Zc=class{constructor(){this.shaderCache=new Map,this.materialCache=new Map}update(t){let e=t.vertexShader,n=t.fragmentShader,s=this._getShaderStage(e),r=this._getShaderStage(n),o=this._getShaderCacheForMaterial(t);return o.has(s)===!1&&(o.add(s),s.usedTimes++),o.has(r)===!1&&(o.add(r),r.usedTimes++),this}remove(t){let e=this.materialCache.get(t);for(let n of e)n.usedTimes--,n.usedTimes===0&&this.shaderCache.delete(n.code);return this.materialCache.delete(t),this}getVertexShaderID(t){return this._getShaderStage(t.vertexShader).id}getFragmentShaderID(t){return this._getShaderStage(t.fragmentShader).id}dispose(){this.shaderCache.clear(),this.materialCache.clear()}_getShaderCacheForMaterial(t){let e=this.materialCache,n=e.get(t);return n===void 0&&(n=new Set,e.set(t,n)),n}_getShaderStage(t){let e=this.shaderCache,n=e.get(t);return n===void 0&&(n=new Jc(t),e.set(t,n)),n}},Jc=class{constructor(t){this.id=ay++,this.code=t,this.usedTimes=0}};function ly(i,t,e,n,s,r,o){let a=new pa,l=new Zc,c=new Set,u=[],f=s.logarithmicDepthBuffer,h=s.vertexTextures,d=s.precision,_={MeshDepthMaterial:"depth",MeshDistanceMaterial:"distanceRGBA",MeshNormalMaterial:"normal",MeshBasicMaterial:"basic",MeshLambertMaterial:"lambert",MeshPhongMaterial:"phong",MeshToonMaterial:"toon",MeshStandardMaterial:"physical",MeshPhysicalMaterial:"physical",MeshMatcapMaterial:"matcap",LineBasicMaterial:"basic",LineDashedMaterial:"dashed",PointsMaterial:"points",ShadowMaterial:"shadow",SpriteMaterial:"sprite"};function x(E){return c.add(E),E===0?"uv":`uv${E}`}function m(E,M,C,W,V){let Y=W.fog,j=V.geometry,Z=E.isMeshStandardMaterial?W.environment:null,et=(E.isMeshStandardMaterial?e:t).get(E.envMap||Z),K=et&&et.mapping===La?et.image.height:null,ht=_[E.type];E.precision!==null&&(d=s.getMaxPrecision(E.precision),d!==E.precision&&console.warn("THREE.WebGLProgram.getParameters:",E.precision,"not supported, using",d,"instead."));let ot=j.morphAttributes.position||j.morphAttributes.normal||j.morphAttributes.color,mt=ot!==void 0?ot.length:0,dt=0;j.morphAttributes.position!==void 0&&(dt=1),j.morphAttributes.normal!==void 0&&(dt=2),j.morphAttributes.color!==void 0&&(dt=3);let Gt,$,ct,It;if(ht){let re=xi[ht];Gt=re.vertexShader,$=re.fragmentShader}else Gt=E.vertexShader,$=E.fragmentShader,l.update(E),ct=l.getVertexShaderID(E),It=l.getFragmentShaderID(E);let ut=i.getRenderTarget(),Dt=i.state.buffers.depth.getReversed(),Ht=V.isInstancedMesh===!0,zt=V.isBatchedMesh===!0,se=!!E.map,jt=!!E.matcap,Se=!!et,z=!!E.aoMap,$e=!!E.lightMap,ee=!!E.bumpMap,Zt=!!E.normalMap,Nt=!!E.displacementMap,xe=!!E.emissiveMap,Ft=!!E.metalnessMap,A=!!E.roughnessMap,v=E.anisotropy>0,B=E.clearcoat>0,nt=E.dispersion>0,J=E.iridescence>0,tt=E.sheen>0,Pt=E.transmission>0,gt=v&&!!E.anisotropyMap,yt=B&&!!E.clearcoatMap,Xt=B&&!!E.clearcoatNormalMap,at=B&&!!E.clearcoatRoughnessMap,_t=J&&!!E.iridescenceMap,Bt=J&&!!E.iridescenceThicknessMap,Vt=tt&&!!E.sheenColorMap,St=tt&&!!E.sheenRoughnessMap,Qt=!!E.specularMap,Yt=!!E.specularColorMap,ge=!!E.specularIntensityMap,U=Pt&&!!E.transmissionMap,xt=Pt&&!!E.thicknessMap,Q=!!E.gradientMap,st=!!E.alphaMap,wt=E.alphaTest>0,bt=!!E.alphaHash,Jt=!!E.extensions,Ue=ns;E.toneMapped&&(ut===null||ut.isXRRenderTarget===!0)&&(Ue=i.toneMapping);let At={shaderID:ht,shaderType:E.type,shaderName:E.name,vertexShader:Gt,fragmentShader:$,defines:E.defines,customVertexShaderID:ct,customFragmentShaderID:It,isRawShaderMaterial:E.isRawShaderMaterial===!0,glslVersion:E.glslVersion,precision:d,batching:zt,batchingColor:zt&&V._colorsTexture!==null,instancing:Ht,instancingColor:Ht&&V.instanceColor!==null,instancingMorph:Ht&&V.morphTexture!==null,supportsVertexTextures:h,outputColorSpace:ut===null?i.outputColorSpace:ut.isXRRenderTarget===!0?ut.texture.colorSpace:rs,alphaToCoverage:!!E.alphaToCoverage,map:se,matcap:jt,envMap:Se,envMapMode:Se&&et.mapping,envMapCubeUVHeight:K,aoMap:z,lightMap:$e,bumpMap:ee,normalMap:Zt,displacementMap:h&&Nt,emissiveMap:xe,normalMapObjectSpace:Zt&&E.normalMapType===ug,normalMapTangentSpace:Zt&&E.normalMapType===hg,metalnessMap:Ft,roughnessMap:A,anisotropy:v,anisotropyMap:gt,clearcoat:B,clearcoatMap:yt,clearcoatNormalMap:Xt,clearcoatRoughnessMap:at,dispersion:nt,iridescence:J,iridescenceMap:_t,iridescenceThicknessMap:Bt,sheen:tt,sheenColorMap:Vt,sheenRoughnessMap:St,specularMap:Qt,specularColorMap:Yt,specularIntensityMap:ge,transmission:Pt,transmissionMap:U,thicknessMap:xt,gradientMap:Q,opaque:E.transparent===!1&&E.blending===_r&&E.alphaToCoverage===!1,alphaMap:st,alphaTest:wt,alphaHash:bt,combine:E.combine,mapUv:se&&x(E.map.channel),aoMapUv:z&&x(E.aoMap.channel),lightMapUv:$e&&x(E.lightMap.channel),bumpMapUv:ee&&x(E.bumpMap.channel),normalMapUv:Zt&&x(E.normalMap.channel),displacementMapUv:Nt&&x(E.displacementMap.channel),emissiveMapUv:xe&&x(E.emissiveMap.channel),metalnessMapUv:Ft&&x(E.metalnessMap.channel),roughnessMapUv:A&&x(E.roughnessMap.channel),anisotropyMapUv:gt&&x(E.anisotropyMap.channel),clearcoatMapUv:yt&&x(E.clearcoatMap.channel),clearcoatNormalMapUv:Xt&&x(E.clearcoatNormalMap.channel),clearcoatRoughnessMapUv:at&&x(E.clearcoatRoughnessMap.channel),iridescenceMapUv:_t&&x(E.iridescenceMap.channel),iridescenceThicknessMapUv:Bt&&x(E.iridescenceThicknessMap.channel),sheenColorMapUv:Vt&&x(E.sheenColorMap.channel),sheenRoughnessMapUv:St&&x(E.sheenRoughnessMap.channel),specularMapUv:Qt&&x(E.specularMap.channel),specularColorMapUv:Yt&&x(E.specularColorMap.channel),specularIntensityMapUv:ge&&x(E.specularIntensityMap.channel),transmissionMapUv:U&&x(E.transmissionMap.channel),thicknessMapUv:xt&&x(E.thicknessMap.channel),alphaMapUv:st&&x(E.alphaMap.channel),vertexTangents:!!j.attributes.tangent&&(Zt||v),vertexColors:E.vertexColors,vertexAlphas:E.vertexColors===!0&&!!j.attributes.color&&j.attributes.color.itemSize===4,pointsUvs:V.isPoints===!0&&!!j.attributes.uv&&(se||st),fog:!!Y,useFog:E.fog===!0,fogExp2:!!Y&&Y.isFogExp2,flatShading:E.flatShading===!0,sizeAttenuation:E.sizeAttenuation===!0,logarithmicDepthBuffer:f,reverseDepthBuffer:Dt,skinning:V.isSkinnedMesh===!0,morphTargets:j.morphAttributes.position!==void 0,morphNormals:j.morphAttributes.normal!==void 0,morphColors:j.morphAttributes.color!==void 0,morphTargetsCount:mt,morphTextureStride:dt,numDirLights:M.directional.length,numPointLights:M.point.length,numSpotLights:M.spot.length,numSpotLightMaps:M.spotLightMap.length,numRectAreaLights:M.rectArea.length,numHemiLights:M.hemi.length,numDirLightShadows:M.directionalShadowMap.length,numPointLightShadows:M.pointShadowMap.length,numSpotLightShadows:M.spotShadowMap.length,numSpotLightShadowsWithMaps:M.numSpotLightShadowsWithMaps,numLightProbes:M.numLightProbes,numClippingPlanes:o.numPlanes,numClipIntersection:o.numIntersection,dithering:E.dithering,shadowMapEnabled:i.shadowMap.enabled&&C.length>0,shadowMapType:i.shadowMap.type,toneMapping:Ue,decodeVideoTexture:se&&E.map.isVideoTexture===!0&&de.getTransfer(E.map.colorSpace)===Ee,decodeVideoTextureEmissive:xe&&E.emissiveMap.isVideoTexture===!0&&de.getTransfer(E.emissiveMap.colorSpace)===Ee,premultipliedAlpha:E.premultipliedAlpha,doubleSided:E.side===si,flipSided:E.side===Tn,useDepthPacking:E.depthPacking>=0,depthPacking:E.depthPacking||0,index0AttributeName:E.index0AttributeName,extensionClipCullDistance:Jt&&E.extensions.clipCullDistance===!0&&n.has("WEBGL_clip_cull_distance"),extensionMultiDraw:(Jt&&E.extensions.multiDraw===!0||zt)&&n.has("WEBGL_multi_draw"),rendererExtensionParallelShaderCompile:n.has("KHR_parallel_shader_compile"),customProgramCacheKey:E.customProgramCacheKey()};return At.vertexUv1s=c.has(1),At.vertexUv2s=c.has(2),At.vertexUv3s=c.has(3),c.clear(),At}function p(E){let M=[];if(E.shaderID?M.push(E.shaderID):(M.push(E.customVertexShaderID),M.push(E.customFragmentShaderID)),E.defines!==void 0)for(let C in E.defines)M.push(C),M.push(E.defines[C]);return E.isRawShaderMaterial===!1&&(T(M,E),w(M,E),M.push(i.outputColorSpace)),M.push(E.customProgramCacheKey),M.join()}function T(E,M){E.push(M.precision),E.push(M.outputColorSpace),E.push(M.envMapMode),E.push(M.envMapCubeUVHeight),E.push(M.mapUv),E.push(M.alphaMapUv),E.push(M.lightMapUv),E.push(M.aoMapUv),E.push(M.bumpMapUv),E.push(M.normalMapUv),E.push(M.displacementMapUv),E.push(M.emissiveMapUv),E.push(M.metalnessMapUv),E.push(M.roughnessMapUv),E.push(M.anisotropyMapUv),E.push(M.clearcoatMapUv),E.push(M.clearcoatNormalMapUv),E.push(M.clearcoatRoughnessMapUv),E.push(M.iridescenceMapUv),E.push(M.iridescenceThicknessMapUv),E.push(M.sheenColorMapUv),E.push(M.sheenRoughnessMapUv),E.push(M.specularMapUv),E.push(M.specularColorMapUv),E.push(M.specularIntensityMapUv),E.push(M.transmissionMapUv),E.push(M.thicknessMapUv),E.push(M.combine),E.push(M.fogExp2),E.push(M.sizeAttenuation),E.push(M.morphTargetsCount),E.push(M.morphAttributeCount),E.push(M.numDirLights),E.push(M.numPointLights),E.push(M.numSpotLights),E.push(M.numSpotLightMaps),E.push(M.numHemiLights),E.push(M.numRectAreaLights),E.push(M.numDirLightShadows),E.push(M.numPointLightShadows),E.push(M.numSpotLightShadows),E.push(M.numSpotLightShadowsWithMaps),E.push(M.numLightProbes),E.push(M.shadowMapType),E.push(M.toneMapping),E.push(M.numClippingPlanes),E.push(M.numClipIntersection),E.push(M.depthPacking)}function w(E,M){a.disableAll(),M.supportsVertexTextures&&a.enable(0),M.instancing&&a.enable(1),M.instancingColor&&a.enable(2),M.instancingMorph&&a.enable(3),M.matcap&&a.enable(4),M.envMap&&a.enable(5),M.normalMapObjectSpace&&a.enable(6),M.normalMapTangentSpace&&a.enable(7),M.clearcoat&&a.enable(8),M.iridescence&&a.enable(9),M.alphaTest&&a.enable(10),M.vertexColors&&a.enable(11),M.vertexAlphas&&a.enable(12),M.vertexUv1s&&a.enable(13),M.vertexUv2s&&a.enable(14),M.vertexUv3s&&a.enable(15),M.vertexTangents&&a.enable(16),M.anisotropy&&a.enable(17),M.alphaHash&&a.enable(18),M.batching&&a.enable(19),M.dispersion&&a.enable(20),M.batchingColor&&a.enable(21),E.push(a.mask),a.disableAll(),M.fog&&a.enable(0),M.useFog&&a.enable(1),M.flatShading&&a.enable(2),M.logarithmicDepthBuffer&&a.enable(3),M.reverseDepthBuffer&&a.enable(4),M.skinning&&a.enable(5),M.morphTargets&&a.enable(6),M.morphNormals&&a.enable(7),M.morphColors&&a.enable(8),M.premultipliedAlpha&&a.enable(9),M.shadowMapEnabled&&a.enable(10),M.doubleSided&&a.enable(11),M.flipSided&&a.enable(12),M.useDepthPacking&&a.enable(13),M.dithering&&a.enable(14),M.transmission&&a.enable(15),M.sheen&&a.enable(16),M.opaque&&a.enable(17),M.pointsUvs&&a.enable(18),M.decodeVideoTexture&&a.enable(19),M.decodeVideoTextureEmissive&&a.enable(20),M.alphaToCoverage&&a.enable(21),E.push(a.mask)}function b(E){let M=_[E.type],C;if(M){let W=xi[M];C=jg.clone(W.uniforms)}else C=E.uniforms;return C}function D(E,M){let C;for(let W=0,V=u.length;W<V;W++){let Y=u[W];if(Y.cacheKey===M){C=Y,++C.usedTimes;break}}return C===void 0&&(C=new oy(i,M,E,r),u.push(C)),C}function L(E){if(--E.usedTimes===0){let M=u.indexOf(E);u[M]=u[u.length-1],u.pop(),E.destroy()}}function I(E){l.remove(E)}function N(){l.dispose()}return{getParameters:m,getProgramCacheKey:p,getUniforms:b,acquireProgram:D,releaseProgram:L,releaseShaderCache:I,programs:u,dispose:N}}function cy(){let i=new WeakMap;function t(o){return i.has(o)}function e(o){let a=i.get(o);return a===void 0&&(a={},i.set(o,a)),a}function n(o){i.delete(o)}function s(o,a,l){i.get(o)[a]=l}function r(){i=new WeakMap}return{has:t,get:e,remove:n,update:s,dispose:r}}function hy(i,t){return i.groupOrder!==t.groupOrder?i.groupOrder-t.groupOrder:i.renderOrder!==t.renderOrder?i.renderOrder-t.renderOrder:i.material.id!==t.material.id?i.material.id-t.material.id:i.z!==t.z?i.z-t.z:i.id-t.id}function Bf(i,t){return i.groupOrder!==t.groupOrder?i.groupOrder-t.groupOrder:i.renderOrder!==t.renderOrder?i.renderOrder-t.renderOrder:i.z!==t.z?t.z-i.z:i.id-t.id}function kf(){let i=[],t=0,e=[],n=[],s=[];function r(){t=0,e.length=0,n.length=0,s.length=0}function o(f,h,d,_,x,m){let p=i[t];return p===void 0?(p={id:f.id,object:f,geometry:h,material:d,groupOrder:_,renderOrder:f.renderOrder,z:x,group:m},i[t]=p):(p.id=f.id,p.object=f,p.geometry=h,p.material=d,p.groupOrder=_,p.renderOrder=f.renderOrder,p.z=x,p.group=m),t++,p}function a(f,h,d,_,x,m){let p=o(f,h,d,_,x,m);d.transmission>0?n.push(p):d.transparent===!0?s.push(p):e.push(p)}function l(f,h,d,_,x,m){let p=o(f,h,d,_,x,m);d.transmission>0?n.unshift(p):d.transparent===!0?s.unshift(p):e.unshift(p)}function c(f,h){e.length>1&&e.sort(f||hy),n.length>1&&n.sort(h||Bf),s.length>1&&s.sort(h||Bf)}function u(){for(let f=t,h=i.length;f<h;f++){let d=i[f];if(d.id===null)break;d.id=null,d.object=null,d.geometry=null,d.material=null,d.group=null}}return{opaque:e,transmissive:n,transparent:s,init:r,push:a,unshift:l,finish:u,sort:c}}function uy(){let i=new WeakMap;function t(n,s){let r=i.get(n),o;return r===void 0?(o=new kf,i.set(n,[o])):s>=r.length?(o=new kf,r.push(o)):o=r[s],o}function e(){i=new WeakMap}return{get:t,dispose:e}}function fy(){let i={};return{get:function(t){if(i[t.id]!==void 0)return i[t.id];let e;switch(t.type){case"DirectionalLight":e={direction:new H,color:new pe};break;case"SpotLight":e={position:new H,direction:new H,color:new pe,distance:0,coneCos:0,penumbraCos:0,decay:0};break;case"PointLight":e={position:new H,color:new pe,distance:0,decay:0};break;case"HemisphereLight":e={direction:new H,skyColor:new pe,groundColor:new pe};break;case"RectAreaLight":e={color:new pe,position:new H,halfWidth:new H,halfHeight:new H};break}return i[t.id]=e,e}}}function dy(){let i={};return{get:function(t){if(i[t.id]!==void 0)return i[t.id];let e;switch(t.type){case"DirectionalLight":e={shadowIntensity:1,shadowBias:0,shadowNormalBias:0,shadowRadius:1,shadowMapSize:new ie};break;case"SpotLight":e={shadowIntensity:1,shadowBias:0,shadowNormalBias:0,shadowRadius:1,shadowMapSize:new ie};break;case"PointLight":e={shadowIntensity:1,shadowBias:0,shadowNormalBias:0,shadowRadius:1,shadowMapSize:new ie,shadowCameraNear:1,shadowCameraFar:1e3};break}return i[t.id]=e,e}}}var py=0;function my(i,t){return(t.castShadow?2:0)-(i.castShadow?2:0)+(t.map?1:0)-(i.map?1:0)}function gy(i){let t=new fy,e=dy(),n={version:0,hash:{directionalLength:-1,pointLength:-1,spotLength:-1,rectAreaLength:-1,hemiLength:-1,numDirectionalShadows:-1,numPointShadows:-1,numSpotShadows:-1,numSpotMaps:-1,numLightProbes:-1},ambient:[0,0,0],probe:[],directional:[],directionalShadow:[],directionalShadowMap:[],directionalShadowMatrix:[],spot:[],spotLightMap:[],spotShadow:[],spotShadowMap:[],spotLightMatrix:[],rectArea:[],rectAreaLTC1:null,rectAreaLTC2:null,point:[],pointShadow:[],pointShadowMap:[],pointShadowMatrix:[],hemi:[],numSpotLightShadowsWithMaps:0,numLightProbes:0};for(let c=0;c<9;c++)n.probe.push(new H);let s=new H,r=new Ve,o=new Ve;function a(c){let u=0,f=0,h=0;for(let E=0;E<9;E++)n.probe[E].set(0,0,0);let d=0,_=0,x=0,m=0,p=0,T=0,w=0,b=0,D=0,L=0,I=0;c.sort(my);for(let E=0,M=c.length;E<M;E++){let C=c[E],W=C.color,V=C.intensity,Y=C.distance,j=C.shadow&&C.shadow.map?C.shadow.map.texture:null;if(C.isAmbientLight)u+=W.r*V,f+=W.g*V,h+=W.b*V;else if(C.isLightProbe){for(let Z=0;Z<9;Z++)n.probe[Z].addScaledVector(C.sh.coefficients[Z],V);I++}else if(C.isDirectionalLight){let Z=t.get(C);if(Z.color.copy(C.color).multiplyScalar(C.intensity),C.castShadow){let et=C.shadow,K=e.get(C);K.shadowIntensity=et.intensity,K.shadowBias=et.bias,K.shadowNormalBias=et.normalBias,K.shadowRadius=et.radius,K.shadowMapSize=et.mapSize,n.directionalShadow[d]=K,n.directionalShadowMap[d]=j,n.directionalShadowMatrix[d]=C.shadow.matrix,T++}n.directional[d]=Z,d++}else if(C.isSpotLight){let Z=t.get(C);Z.position.setFromMatrixPosition(C.matrixWorld),Z.color.copy(W).multiplyScalar(V),Z.distance=Y,Z.coneCos=Math.cos(C.angle),Z.penumbraCos=Math.cos(C.angle*(1-C.penumbra)),Z.decay=C.decay,n.spot[x]=Z;let et=C.shadow;if(C.map&&(n.spotLightMap[D]=C.map,D++,et.updateMatrices(C),C.castShadow&&L++),n.spotLightMatrix[x]=et.matrix,C.castShadow){let K=e.get(C);K.shadowIntensity=et.intensity,K.shadowBias=et.bias,K.shadowNormalBias=et.normalBias,K.shadowRadius=et.radius,K.shadowMapSize=et.mapSize,n.spotShadow[x]=K,n.spotShadowMap[x]=j,b++}x++}else if(C.isRectAreaLight){let Z=t.get(C);Z.color.copy(W).multiplyScalar(V),Z.halfWidth.set(C.width*.5,0,0),Z.halfHeight.set(0,C.height*.5,0),n.rectArea[m]=Z,m++}else if(C.isPointLight){let Z=t.get(C);if(Z.color.copy(C.color).multiplyScalar(C.intensity),Z.distance=C.distance,Z.decay=C.decay,C.castShadow){let et=C.shadow,K=e.get(C);K.shadowIntensity=et.intensity,K.shadowBias=et.bias,K.shadowNormalBias=et.normalBias,K.shadowRadius=et.radius,K.shadowMapSize=et.mapSize,K.shadowCameraNear=et.camera.near,K.shadowCameraFar=et.camera.far,n.pointShadow[_]=K,n.pointShadowMap[_]=j,n.pointShadowMatrix[_]=C.shadow.matrix,w++}n.point[_]=Z,_++}else if(C.isHemisphereLight){let Z=t.get(C);Z.skyColor.copy(C.color).multiplyScalar(V),Z.groundColor.copy(C.groundColor).multiplyScalar(V),n.hemi[p]=Z,p++}}m>0&&(i.has("OES_texture_float_linear")===!0?(n.rectAreaLTC1=vt.LTC_FLOAT_1,n.rectAreaLTC2=vt.LTC_FLOAT_2):(n.rectAreaLTC1=vt.LTC_HALF_1,n.rectAreaLTC2=vt.LTC_HALF_2)),n.ambient[0]=u,n.ambient[1]=f,n.ambient[2]=h;let N=n.hash;(N.directionalLength!==d||N.pointLength!==_||N.spotLength!==x||N.rectAreaLength!==m||N.hemiLength!==p||N.numDirectionalShadows!==T||N.numPointShadows!==w||N.numSpotShadows!==b||N.numSpotMaps!==D||N.numLightProbes!==I)&&(n.directional.length=d,n.spot.length=x,n.rectArea.length=m,n.point.length=_,n.hemi.length=p,n.directionalShadow.length=T,n.directionalShadowMap.length=T,n.pointShadow.length=w,n.pointShadowMap.length=w,n.spotShadow.length=b,n.spotShadowMap.length=b,n.directionalShadowMatrix.length=T,n.pointShadowMatrix.length=w,n.spotLightMatrix.length=b+D-L,n.spotLightMap.length=D,n.numSpotLightShadowsWithMaps=L,n.numLightProbes=I,N.directionalLength=d,N.pointLength=_,N.spotLength=x,N.rectAreaLength=m,N.hemiLength=p,N.numDirectionalShadows=T,N.numPointShadows=w,N.numSpotShadows=b,N.numSpotMaps=D,N.numLightProbes=I,n.version=py++)}function l(c,u){let f=0,h=0,d=0,_=0,x=0,m=u.matrixWorldInverse;for(let p=0,T=c.length;p<T;p++){let w=c[p];if(w.isDirectionalLight){let b=n.directional[f];b.direction.setFromMatrixPosition(w.matrixWorld),s.setFromMatrixPosition(w.target.matrixWorld),b.direction.sub(s),b.direction.transformDirection(m),f++}else if(w.isSpotLight){let b=n.spot[d];b.position.setFromMatrixPosition(w.matrixWorld),b.position.applyMatrix4(m),b.direction.setFromMatrixPosition(w.matrixWorld),s.setFromMatrixPosition(w.target.matrixWorld),b.direction.sub(s),b.direction.transformDirection(m),d++}else if(w.isRectAreaLight){let b=n.rectArea[_];b.position.setFromMatrixPosition(w.matrixWorld),b.position.applyMatrix4(m),o.identity(),r.copy(w.matrixWorld),r.premultiply(m),o.extractRotation(r),b.halfWidth.set(w.width*.5,0,0),b.halfHeight.set(0,w.height*.5,0),b.halfWidth.applyMatrix4(o),b.halfHeight.applyMatrix4(o),_++}else if(w.isPointLight){let b=n.point[h];b.position.setFromMatrixPosition(w.matrixWorld),b.position.applyMatrix4(m),h++}else if(w.isHemisphereLight){let b=n.hemi[x];b.direction.setFromMatrixPosition(w.matrixWorld),b.direction.transformDirection(m),x++}}}return{setup:a,setupView:l,state:n}}function zf(i){let t=new gy(i),e=[],n=[];function s(u){c.camera=u,e.length=0,n.length=0}function r(u){e.push(u)}function o(u){n.push(u)}function a(){t.setup(e)}function l(u){t.setupView(e,u)}let c={lightsArray:e,shadowsArray:n,camera:null,lights:t,transmissionRenderTarget:{}};return{init:s,state:c,setupLights:a,setupLightsView:l,pushLight:r,pushShadow:o}}function _y(i){let t=new WeakMap;function e(s,r=0){let o=t.get(s),a;return o===void 0?(a=new zf(i),t.set(s,[a])):r>=o.length?(a=new zf(i),o.push(a)):a=o[r],a}function n(){t=new WeakMap}return{get:e,dispose:n}}var Kc=class extends ss{static get type(){return"MeshDepthMaterial"}constructor(t){super(),this.isMeshDepthMaterial=!0,this.depthPacking=lg,this.map=null,this.alphaMap=null,this.displacementMap=null,this.displacementScale=1,this.displacementBias=0,this.wireframe=!1,this.wireframeLinewidth=1,this.setValues(t)}copy(t){return super.copy(t),this.depthPacking=t.depthPacking,this.map=t.map,this.alphaMap=t.alphaMap,this.displacementMap=t.displacementMap,this.displacementScale=t.displacementScale,this.displacementBias=t.displacementBias,this.wireframe=t.wireframe,this.wireframeLinewidth=t.wireframeLinewidth,this}},jc=class extends ss{static get type(){return"MeshDistanceMaterial"}constructor(t){super(),this.isMeshDistanceMaterial=!0,this.map=null,this.alphaMap=null,this.displacementMap=null,this.displacementScale=1,this.displacementBias=0,this.setValues(t)}copy(t){return super.copy(t),this.map=t.map,this.alphaMap=t.alphaMap,this.displacementMap=t.displacementMap,this.displacementScale=t.displacementScale,this.displacementBias=t.displacementBias,this}},xy=`void main() {
	gl_Position = vec4( position, 1.0 );
}`,vy=`uniform sampler2D shadow_pass;
uniform vec2 resolution;
uniform float radius;
#include <packing>
void main() {
	const float samples = float( VSM_SAMPLES );
	float mean = 0.0;
	float squared_mean = 0.0;
	float uvStride = samples <= 1.0 ? 0.0 : 2.0 / ( samples - 1.0 );
	float uvStart = samples <= 1.0 ? 0.0 : - 1.0;
	for ( float i = 0.0; i < samples; i ++ ) {
		float uvOffset = uvStart + i * uvStride;
		#ifdef HORIZONTAL_PASS
			vec2 distribution = unpackRGBATo2Half( texture2D( shadow_pass, ( gl_FragCoord.xy + vec2( uvOffset, 0.0 ) * radius ) / resolution ) );
			mean += distribution.x;
			squared_mean += distribution.y * distribution.y + distribution.x * distribution.x;
		#else
			float depth = unpackRGBAToDepth( texture2D( shadow_pass, ( gl_FragCoord.xy + vec2( 0.0, uvOffset ) * radius ) / resolution ) );
			mean += depth;
			squared_mean += depth * depth;
		#endif
	}
	mean = mean / samples;
	squared_mean = squared_mean / samples;
	float std_dev = sqrt( squared_mean - mean * mean );
	gl_FragColor = pack2HalfToRGBA( vec2( mean, std_dev ) );
}`;function yy(i,t,e){let n=new ya,s=new ie,r=new ie,o=new De,a=new Kc({depthPacking:cg}),l=new jc,c={},u=e.maxTextureSize,f={[is]:Tn,[Tn]:is,[si]:si},h=new An({defines:{VSM_SAMPLES:8},uniforms:{shadow_pass:{value:null},resolution:{value:new ie},radius:{value:4}},vertexShader:xy,fragmentShader:vy}),d=h.clone();d.defines.HORIZONTAL_PASS=1;let _=new cn;_.setAttribute("position",new Be(new Float32Array([-1,-1,.5,3,-1,.5,-1,3,.5]),3));let x=new En(_,h),m=this;this.enabled=!1,this.autoUpdate=!0,this.needsUpdate=!1,this.type=$f;let p=this.type;this.render=function(L,I,N){if(m.enabled===!1||m.autoUpdate===!1&&m.needsUpdate===!1||L.length===0)return;let E=i.getRenderTarget(),M=i.getActiveCubeFace(),C=i.getActiveMipmapLevel(),W=i.state;W.setBlending(es),W.buffers.color.setClear(1,1,1,1),W.buffers.depth.setTest(!0),W.setScissorTest(!1);let V=p!==Li&&this.type===Li,Y=p===Li&&this.type!==Li;for(let j=0,Z=L.length;j<Z;j++){let et=L[j],K=et.shadow;if(K===void 0){console.warn("THREE.WebGLShadowMap:",et,"has no shadow.");continue}if(K.autoUpdate===!1&&K.needsUpdate===!1)continue;s.copy(K.mapSize);let ht=K.getFrameExtents();if(s.multiply(ht),r.copy(K.mapSize),(s.x>u||s.y>u)&&(s.x>u&&(r.x=Math.floor(u/ht.x),s.x=r.x*ht.x,K.mapSize.x=r.x),s.y>u&&(r.y=Math.floor(u/ht.y),s.y=r.y*ht.y,K.mapSize.y=r.y)),K.map===null||V===!0||Y===!0){let mt=this.type!==Li?{minFilter:Un,magFilter:Un}:{};K.map!==null&&K.map.dispose(),K.map=new Bi(s.x,s.y,mt),K.map.texture.name=et.name+".shadowMap",K.camera.updateProjectionMatrix()}i.setRenderTarget(K.map),i.clear();let ot=K.getViewportCount();for(let mt=0;mt<ot;mt++){let dt=K.getViewport(mt);o.set(r.x*dt.x,r.y*dt.y,r.x*dt.z,r.y*dt.w),W.viewport(o),K.updateMatrices(et,mt),n=K.getFrustum(),b(I,N,K.camera,et,this.type)}K.isPointLightShadow!==!0&&this.type===Li&&T(K,N),K.needsUpdate=!1}p=this.type,m.needsUpdate=!1,i.setRenderTarget(E,M,C)};function T(L,I){let N=t.update(x);h.defines.VSM_SAMPLES!==L.blurSamples&&(h.defines.VSM_SAMPLES=L.blurSamples,d.defines.VSM_SAMPLES=L.blurSamples,h.needsUpdate=!0,d.needsUpdate=!0),L.mapPass===null&&(L.mapPass=new Bi(s.x,s.y)),h.uniforms.shadow_pass.value=L.map.texture,h.uniforms.resolution.value=L.mapSize,h.uniforms.radius.value=L.radius,i.setRenderTarget(L.mapPass),i.clear(),i.renderBufferDirect(I,null,N,h,x,null),d.uniforms.shadow_pass.value=L.mapPass.texture,d.uniforms.resolution.value=L.mapSize,d.uniforms.radius.value=L.radius,i.setRenderTarget(L.map),i.clear(),i.renderBufferDirect(I,null,N,d,x,null)}function w(L,I,N,E){let M=null,C=N.isPointLight===!0?L.customDistanceMaterial:L.customDepthMaterial;if(C!==void 0)M=C;else if(M=N.isPointLight===!0?l:a,i.localClippingEnabled&&I.clipShadows===!0&&Array.isArray(I.clippingPlanes)&&I.clippingPlanes.length!==0||I.displacementMap&&I.displacementScale!==0||I.alphaMap&&I.alphaTest>0||I.map&&I.alphaTest>0){let W=M.uuid,V=I.uuid,Y=c[W];Y===void 0&&(Y={},c[W]=Y);let j=Y[V];j===void 0&&(j=M.clone(),Y[V]=j,I.addEventListener("dispose",D)),M=j}if(M.visible=I.visible,M.wireframe=I.wireframe,E===Li?M.side=I.shadowSide!==null?I.shadowSide:I.side:M.side=I.shadowSide!==null?I.shadowSide:f[I.side],M.alphaMap=I.alphaMap,M.alphaTest=I.alphaTest,M.map=I.map,M.clipShadows=I.clipShadows,M.clippingPlanes=I.clippingPlanes,M.clipIntersection=I.clipIntersection,M.displacementMap=I.displacementMap,M.displacementScale=I.displacementScale,M.displacementBias=I.displacementBias,M.wireframeLinewidth=I.wireframeLinewidth,M.linewidth=I.linewidth,N.isPointLight===!0&&M.isMeshDistanceMaterial===!0){let W=i.properties.get(M);W.light=N}return M}function b(L,I,N,E,M){if(L.visible===!1)return;if(L.layers.test(I.layers)&&(L.isMesh||L.isLine||L.isPoints)&&(L.castShadow||L.receiveShadow&&M===Li)&&(!L.frustumCulled||n.intersectsObject(L))){L.modelViewMatrix.multiplyMatrices(N.matrixWorldInverse,L.matrixWorld);let V=t.update(L),Y=L.material;if(Array.isArray(Y)){let j=V.groups;for(let Z=0,et=j.length;Z<et;Z++){let K=j[Z],ht=Y[K.materialIndex];if(ht&&ht.visible){let ot=w(L,ht,E,M);L.onBeforeShadow(i,L,I,N,V,ot,K),i.renderBufferDirect(N,null,V,ot,L,K),L.onAfterShadow(i,L,I,N,V,ot,K)}}}else if(Y.visible){let j=w(L,Y,E,M);L.onBeforeShadow(i,L,I,N,V,j,null),i.renderBufferDirect(N,null,V,j,L,null),L.onAfterShadow(i,L,I,N,V,j,null)}}let W=L.children;for(let V=0,Y=W.length;V<Y;V++)b(W[V],I,N,E,M)}function D(L){L.target.removeEventListener("dispose",D);for(let N in c){let E=c[N],M=L.target.uuid;M in E&&(E[M].dispose(),delete E[M])}}}var My={[nc]:ic,[sc]:ac,[rc]:lc,[Mr]:oc,[ic]:nc,[ac]:sc,[lc]:rc,[oc]:Mr};function Sy(i,t){function e(){let U=!1,xt=new De,Q=null,st=new De(0,0,0,0);return{setMask:function(wt){Q!==wt&&!U&&(i.colorMask(wt,wt,wt,wt),Q=wt)},setLocked:function(wt){U=wt},setClear:function(wt,bt,Jt,Ue,At){At===!0&&(wt*=Ue,bt*=Ue,Jt*=Ue),xt.set(wt,bt,Jt,Ue),st.equals(xt)===!1&&(i.clearColor(wt,bt,Jt,Ue),st.copy(xt))},reset:function(){U=!1,Q=null,st.set(-1,0,0,0)}}}function n(){let U=!1,xt=!1,Q=null,st=null,wt=null;return{setReversed:function(bt){if(xt!==bt){let Jt=t.get("EXT_clip_control");xt?Jt.clipControlEXT(Jt.LOWER_LEFT_EXT,Jt.ZERO_TO_ONE_EXT):Jt.clipControlEXT(Jt.LOWER_LEFT_EXT,Jt.NEGATIVE_ONE_TO_ONE_EXT);let Ue=wt;wt=null,this.setClear(Ue)}xt=bt},getReversed:function(){return xt},setTest:function(bt){bt?ut(i.DEPTH_TEST):Dt(i.DEPTH_TEST)},setMask:function(bt){Q!==bt&&!U&&(i.depthMask(bt),Q=bt)},setFunc:function(bt){if(xt&&(bt=My[bt]),st!==bt){switch(bt){case nc:i.depthFunc(i.NEVER);break;case ic:i.depthFunc(i.ALWAYS);break;case sc:i.depthFunc(i.LESS);break;case Mr:i.depthFunc(i.LEQUAL);break;case rc:i.depthFunc(i.EQUAL);break;case oc:i.depthFunc(i.GEQUAL);break;case ac:i.depthFunc(i.GREATER);break;case lc:i.depthFunc(i.NOTEQUAL);break;default:i.depthFunc(i.LEQUAL)}st=bt}},setLocked:function(bt){U=bt},setClear:function(bt){wt!==bt&&(xt&&(bt=1-bt),i.clearDepth(bt),wt=bt)},reset:function(){U=!1,Q=null,st=null,wt=null,xt=!1}}}function s(){let U=!1,xt=null,Q=null,st=null,wt=null,bt=null,Jt=null,Ue=null,At=null;return{setTest:function(re){U||(re?ut(i.STENCIL_TEST):Dt(i.STENCIL_TEST))},setMask:function(re){xt!==re&&!U&&(i.stencilMask(re),xt=re)},setFunc:function(re,be,en){(Q!==re||st!==be||wt!==en)&&(i.stencilFunc(re,be,en),Q=re,st=be,wt=en)},setOp:function(re,be,en){(bt!==re||Jt!==be||Ue!==en)&&(i.stencilOp(re,be,en),bt=re,Jt=be,Ue=en)},setLocked:function(re){U=re},setClear:function(re){At!==re&&(i.clearStencil(re),At=re)},reset:function(){U=!1,xt=null,Q=null,st=null,wt=null,bt=null,Jt=null,Ue=null,At=null}}}let r=new e,o=new n,a=new s,l=new WeakMap,c=new WeakMap,u={},f={},h=new WeakMap,d=[],_=null,x=!1,m=null,p=null,T=null,w=null,b=null,D=null,L=null,I=new pe(0,0,0),N=0,E=!1,M=null,C=null,W=null,V=null,Y=null,j=i.getParameter(i.MAX_COMBINED_TEXTURE_IMAGE_UNITS),Z=!1,et=0,K=i.getParameter(i.VERSION);K.indexOf("WebGL")!==-1?(et=parseFloat(/^WebGL (\d)/.exec(K)[1]),Z=et>=1):K.indexOf("OpenGL ES")!==-1&&(et=parseFloat(/^OpenGL ES (\d)/.exec(K)[1]),Z=et>=2);let ht=null,ot={},mt=i.getParameter(i.SCISSOR_BOX),dt=i.getParameter(i.VIEWPORT),Gt=new De().fromArray(mt),$=new De().fromArray(dt);function ct(U,xt,Q,st){let wt=new Uint8Array(4),bt=i.createTexture();i.bindTexture(U,bt),i.texParameteri(U,i.TEXTURE_MIN_FILTER,i.NEAREST),i.texParameteri(U,i.TEXTURE_MAG_FILTER,i.NEAREST);for(let Jt=0;Jt<Q;Jt++)U===i.TEXTURE_3D||U===i.TEXTURE_2D_ARRAY?i.texImage3D(xt,0,i.RGBA,1,1,st,0,i.RGBA,i.UNSIGNED_BYTE,wt):i.texImage2D(xt+Jt,0,i.RGBA,1,1,0,i.RGBA,i.UNSIGNED_BYTE,wt);return bt}let It={};It[i.TEXTURE_2D]=ct(i.TEXTURE_2D,i.TEXTURE_2D,1),It[i.TEXTURE_CUBE_MAP]=ct(i.TEXTURE_CUBE_MAP,i.TEXTURE_CUBE_MAP_POSITIVE_X,6),It[i.TEXTURE_2D_ARRAY]=ct(i.TEXTURE_2D_ARRAY,i.TEXTURE_2D_ARRAY,1,1),It[i.TEXTURE_3D]=ct(i.TEXTURE_3D,i.TEXTURE_3D,1,1),r.setClear(0,0,0,1),o.setClear(1),a.setClear(0),ut(i.DEPTH_TEST),o.setFunc(Mr),ee(!1),Zt(zu),ut(i.CULL_FACE),z(es);function ut(U){u[U]!==!0&&(i.enable(U),u[U]=!0)}function Dt(U){u[U]!==!1&&(i.disable(U),u[U]=!1)}function Ht(U,xt){return f[U]!==xt?(i.bindFramebuffer(U,xt),f[U]=xt,U===i.DRAW_FRAMEBUFFER&&(f[i.FRAMEBUFFER]=xt),U===i.FRAMEBUFFER&&(f[i.DRAW_FRAMEBUFFER]=xt),!0):!1}function zt(U,xt){let Q=d,st=!1;if(U){Q=h.get(xt),Q===void 0&&(Q=[],h.set(xt,Q));let wt=U.textures;if(Q.length!==wt.length||Q[0]!==i.COLOR_ATTACHMENT0){for(let bt=0,Jt=wt.length;bt<Jt;bt++)Q[bt]=i.COLOR_ATTACHMENT0+bt;Q.length=wt.length,st=!0}}else Q[0]!==i.BACK&&(Q[0]=i.BACK,st=!0);st&&i.drawBuffers(Q)}function se(U){return _!==U?(i.useProgram(U),_=U,!0):!1}let jt={[Ss]:i.FUNC_ADD,[Um]:i.FUNC_SUBTRACT,[Om]:i.FUNC_REVERSE_SUBTRACT};jt[Fm]=i.MIN,jt[Bm]=i.MAX;let Se={[km]:i.ZERO,[zm]:i.ONE,[Vm]:i.SRC_COLOR,[tc]:i.SRC_ALPHA,[qm]:i.SRC_ALPHA_SATURATE,[Xm]:i.DST_COLOR,[Gm]:i.DST_ALPHA,[Hm]:i.ONE_MINUS_SRC_COLOR,[ec]:i.ONE_MINUS_SRC_ALPHA,[Ym]:i.ONE_MINUS_DST_COLOR,[Wm]:i.ONE_MINUS_DST_ALPHA,[$m]:i.CONSTANT_COLOR,[Zm]:i.ONE_MINUS_CONSTANT_COLOR,[Jm]:i.CONSTANT_ALPHA,[Km]:i.ONE_MINUS_CONSTANT_ALPHA};function z(U,xt,Q,st,wt,bt,Jt,Ue,At,re){if(U===es){x===!0&&(Dt(i.BLEND),x=!1);return}if(x===!1&&(ut(i.BLEND),x=!0),U!==Nm){if(U!==m||re!==E){if((p!==Ss||b!==Ss)&&(i.blendEquation(i.FUNC_ADD),p=Ss,b=Ss),re)switch(U){case _r:i.blendFuncSeparate(i.ONE,i.ONE_MINUS_SRC_ALPHA,i.ONE,i.ONE_MINUS_SRC_ALPHA);break;case Vu:i.blendFunc(i.ONE,i.ONE);break;case Hu:i.blendFuncSeparate(i.ZERO,i.ONE_MINUS_SRC_COLOR,i.ZERO,i.ONE);break;case Gu:i.blendFuncSeparate(i.ZERO,i.SRC_COLOR,i.ZERO,i.SRC_ALPHA);break;default:console.error("THREE.WebGLState: Invalid blending: ",U);break}else switch(U){case _r:i.blendFuncSeparate(i.SRC_ALPHA,i.ONE_MINUS_SRC_ALPHA,i.ONE,i.ONE_MINUS_SRC_ALPHA);break;case Vu:i.blendFunc(i.SRC_ALPHA,i.ONE);break;case Hu:i.blendFuncSeparate(i.ZERO,i.ONE_MINUS_SRC_COLOR,i.ZERO,i.ONE);break;case Gu:i.blendFunc(i.ZERO,i.SRC_COLOR);break;default:console.error("THREE.WebGLState: Invalid blending: ",U);break}T=null,w=null,D=null,L=null,I.set(0,0,0),N=0,m=U,E=re}return}wt=wt||xt,bt=bt||Q,Jt=Jt||st,(xt!==p||wt!==b)&&(i.blendEquationSeparate(jt[xt],jt[wt]),p=xt,b=wt),(Q!==T||st!==w||bt!==D||Jt!==L)&&(i.blendFuncSeparate(Se[Q],Se[st],Se[bt],Se[Jt]),T=Q,w=st,D=bt,L=Jt),(Ue.equals(I)===!1||At!==N)&&(i.blendColor(Ue.r,Ue.g,Ue.b,At),I.copy(Ue),N=At),m=U,E=!1}function $e(U,xt){U.side===si?Dt(i.CULL_FACE):ut(i.CULL_FACE);let Q=U.side===Tn;xt&&(Q=!Q),ee(Q),U.blending===_r&&U.transparent===!1?z(es):z(U.blending,U.blendEquation,U.blendSrc,U.blendDst,U.blendEquationAlpha,U.blendSrcAlpha,U.blendDstAlpha,U.blendColor,U.blendAlpha,U.premultipliedAlpha),o.setFunc(U.depthFunc),o.setTest(U.depthTest),o.setMask(U.depthWrite),r.setMask(U.colorWrite);let st=U.stencilWrite;a.setTest(st),st&&(a.setMask(U.stencilWriteMask),a.setFunc(U.stencilFunc,U.stencilRef,U.stencilFuncMask),a.setOp(U.stencilFail,U.stencilZFail,U.stencilZPass)),xe(U.polygonOffset,U.polygonOffsetFactor,U.polygonOffsetUnits),U.alphaToCoverage===!0?ut(i.SAMPLE_ALPHA_TO_COVERAGE):Dt(i.SAMPLE_ALPHA_TO_COVERAGE)}function ee(U){M!==U&&(U?i.frontFace(i.CW):i.frontFace(i.CCW),M=U)}function Zt(U){U!==Im?(ut(i.CULL_FACE),U!==C&&(U===zu?i.cullFace(i.BACK):U===Lm?i.cullFace(i.FRONT):i.cullFace(i.FRONT_AND_BACK))):Dt(i.CULL_FACE),C=U}function Nt(U){U!==W&&(Z&&i.lineWidth(U),W=U)}function xe(U,xt,Q){U?(ut(i.POLYGON_OFFSET_FILL),(V!==xt||Y!==Q)&&(i.polygonOffset(xt,Q),V=xt,Y=Q)):Dt(i.POLYGON_OFFSET_FILL)}function Ft(U){U?ut(i.SCISSOR_TEST):Dt(i.SCISSOR_TEST)}function A(U){U===void 0&&(U=i.TEXTURE0+j-1),ht!==U&&(i.activeTexture(U),ht=U)}function v(U,xt,Q){Q===void 0&&(ht===null?Q=i.TEXTURE0+j-1:Q=ht);let st=ot[Q];st===void 0&&(st={type:void 0,texture:void 0},ot[Q]=st),(st.type!==U||st.texture!==xt)&&(ht!==Q&&(i.activeTexture(Q),ht=Q),i.bindTexture(U,xt||It[U]),st.type=U,st.texture=xt)}function B(){let U=ot[ht];U!==void 0&&U.type!==void 0&&(i.bindTexture(U.type,null),U.type=void 0,U.texture=void 0)}function nt(){try{i.compressedTexImage2D.apply(i,arguments)}catch(U){console.error("THREE.WebGLState:",U)}}function J(){try{i.compressedTexImage3D.apply(i,arguments)}catch(U){console.error("THREE.WebGLState:",U)}}function tt(){try{i.texSubImage2D.apply(i,arguments)}catch(U){console.error("THREE.WebGLState:",U)}}function Pt(){try{i.texSubImage3D.apply(i,arguments)}catch(U){console.error("THREE.WebGLState:",U)}}function gt(){try{i.compressedTexSubImage2D.apply(i,arguments)}catch(U){console.error("THREE.WebGLState:",U)}}function yt(){try{i.compressedTexSubImage3D.apply(i,arguments)}catch(U){console.error("THREE.WebGLState:",U)}}function Xt(){try{i.texStorage2D.apply(i,arguments)}catch(U){console.error("THREE.WebGLState:",U)}}function at(){try{i.texStorage3D.apply(i,arguments)}catch(U){console.error("THREE.WebGLState:",U)}}function _t(){try{i.texImage2D.apply(i,arguments)}catch(U){console.error("THREE.WebGLState:",U)}}function Bt(){try{i.texImage3D.apply(i,arguments)}catch(U){console.error("THREE.WebGLState:",U)}}function Vt(U){Gt.equals(U)===!1&&(i.scissor(U.x,U.y,U.z,U.w),Gt.copy(U))}function St(U){$.equals(U)===!1&&(i.viewport(U.x,U.y,U.z,U.w),$.copy(U))}function Qt(U,xt){let Q=c.get(xt);Q===void 0&&(Q=new WeakMap,c.set(xt,Q));let st=Q.get(U);st===void 0&&(st=i.getUniformBlockIndex(xt,U.name),Q.set(U,st))}function Yt(U,xt){let st=c.get(xt).get(U);l.get(xt)!==st&&(i.uniformBlockBinding(xt,st,U.__bindingPointIndex),l.set(xt,st))}function ge(){i.disable(i.BLEND),i.disable(i.CULL_FACE),i.disable(i.DEPTH_TEST),i.disable(i.POLYGON_OFFSET_FILL),i.disable(i.SCISSOR_TEST),i.disable(i.STENCIL_TEST),i.disable(i.SAMPLE_ALPHA_TO_COVERAGE),i.blendEquation(i.FUNC_ADD),i.blendFunc(i.ONE,i.ZERO),i.blendFuncSeparate(i.ONE,i.ZERO,i.ONE,i.ZERO),i.blendColor(0,0,0,0),i.colorMask(!0,!0,!0,!0),i.clearColor(0,0,0,0),i.depthMask(!0),i.depthFunc(i.LESS),o.setReversed(!1),i.clearDepth(1),i.stencilMask(4294967295),i.stencilFunc(i.ALWAYS,0,4294967295),i.stencilOp(i.KEEP,i.KEEP,i.KEEP),i.clearStencil(0),i.cullFace(i.BACK),i.frontFace(i.CCW),i.polygonOffset(0,0),i.activeTexture(i.TEXTURE0),i.bindFramebuffer(i.FRAMEBUFFER,null),i.bindFramebuffer(i.DRAW_FRAMEBUFFER,null),i.bindFramebuffer(i.READ_FRAMEBUFFER,null),i.useProgram(null),i.lineWidth(1),i.scissor(0,0,i.canvas.width,i.canvas.height),i.viewport(0,0,i.canvas.width,i.canvas.height),u={},ht=null,ot={},f={},h=new WeakMap,d=[],_=null,x=!1,m=null,p=null,T=null,w=null,b=null,D=null,L=null,I=new pe(0,0,0),N=0,E=!1,M=null,C=null,W=null,V=null,Y=null,Gt.set(0,0,i.canvas.width,i.canvas.height),$.set(0,0,i.canvas.width,i.canvas.height),r.reset(),o.reset(),a.reset()}return{buffers:{color:r,depth:o,stencil:a},enable:ut,disable:Dt,bindFramebuffer:Ht,drawBuffers:zt,useProgram:se,setBlending:z,setMaterial:$e,setFlipSided:ee,setCullFace:Zt,setLineWidth:Nt,setPolygonOffset:xe,setScissorTest:Ft,activeTexture:A,bindTexture:v,unbindTexture:B,compressedTexImage2D:nt,compressedTexImage3D:J,texImage2D:_t,texImage3D:Bt,updateUBOMapping:Qt,uniformBlockBinding:Yt,texStorage2D:Xt,texStorage3D:at,texSubImage2D:tt,texSubImage3D:Pt,compressedTexSubImage2D:gt,compressedTexSubImage3D:yt,scissor:Vt,viewport:St,reset:ge}}function Vf(i,t,e,n){let s=by(n);switch(e){case td:return i*t;case nd:return i*t;case id:return i*t*2;case sd:return i*t/s.components*s.byteLength;case yh:return i*t/s.components*s.byteLength;case rd:return i*t*2/s.components*s.byteLength;case Mh:return i*t*2/s.components*s.byteLength;case ed:return i*t*3/s.components*s.byteLength;case ri:return i*t*4/s.components*s.byteLength;case Sh:return i*t*4/s.components*s.byteLength;case sa:case ra:return Math.floor((i+3)/4)*Math.floor((t+3)/4)*8;case oa:case aa:return Math.floor((i+3)/4)*Math.floor((t+3)/4)*16;case pc:case gc:return Math.max(i,16)*Math.max(t,8)/4;case dc:case mc:return Math.max(i,8)*Math.max(t,8)/2;case _c:case xc:return Math.floor((i+3)/4)*Math.floor((t+3)/4)*8;case vc:return Math.floor((i+3)/4)*Math.floor((t+3)/4)*16;case yc:return Math.floor((i+3)/4)*Math.floor((t+3)/4)*16;case Mc:return Math.floor((i+4)/5)*Math.floor((t+3)/4)*16;case Sc:return Math.floor((i+4)/5)*Math.floor((t+4)/5)*16;case bc:return Math.floor((i+5)/6)*Math.floor((t+4)/5)*16;case wc:return Math.floor((i+5)/6)*Math.floor((t+5)/6)*16;case Ec:return Math.floor((i+7)/8)*Math.floor((t+4)/5)*16;case Tc:return Math.floor((i+7)/8)*Math.floor((t+5)/6)*16;case Ac:return Math.floor((i+7)/8)*Math.floor((t+7)/8)*16;case Cc:return Math.floor((i+9)/10)*Math.floor((t+4)/5)*16;case Rc:return Math.floor((i+9)/10)*Math.floor((t+5)/6)*16;case Pc:return Math.floor((i+9)/10)*Math.floor((t+7)/8)*16;case Ic:return Math.floor((i+9)/10)*Math.floor((t+9)/10)*16;case Lc:return Math.floor((i+11)/12)*Math.floor((t+9)/10)*16;case Dc:return Math.floor((i+11)/12)*Math.floor((t+11)/12)*16;case la:case Nc:case Uc:return Math.ceil(i/4)*Math.ceil(t/4)*16;case od:case Oc:return Math.ceil(i/4)*Math.ceil(t/4)*8;case Fc:case Bc:return Math.ceil(i/4)*Math.ceil(t/4)*16}throw new Error(`Unable to determine texture byte length for ${e} format.`)}function by(i){switch(i){case Oi:case Kf:return{byteLength:1,components:1};case ao:case jf:case po:return{byteLength:2,components:1};case xh:case vh:return{byteLength:2,components:4};case As:case _h:case Di:return{byteLength:4,components:1};case Qf:return{byteLength:4,components:3}}throw new Error(`Unknown texture type ${i}.`)}function wy(i,t,e,n,s,r,o){let a=t.has("WEBGL_multisampled_render_to_texture")?t.get("WEBGL_multisampled_render_to_texture"):null,l=typeof navigator>"u"?!1:/OculusBrowser/g.test(navigator.userAgent),c=new ie,u=new WeakMap,f,h=new WeakMap,d=!1;try{d=typeof OffscreenCanvas<"u"&&new OffscreenCanvas(1,1).getContext("2d")!==null}catch{}function _(A,v){return d?new OffscreenCanvas(A,v):ua("canvas")}function x(A,v,B){let nt=1,J=Ft(A);if((J.width>B||J.height>B)&&(nt=B/Math.max(J.width,J.height)),nt<1)if(typeof HTMLImageElement<"u"&&A instanceof HTMLImageElement||typeof HTMLCanvasElement<"u"&&A instanceof HTMLCanvasElement||typeof ImageBitmap<"u"&&A instanceof ImageBitmap||typeof VideoFrame<"u"&&A instanceof VideoFrame){let tt=Math.floor(nt*J.width),Pt=Math.floor(nt*J.height);f===void 0&&(f=_(tt,Pt));let gt=v?_(tt,Pt):f;return gt.width=tt,gt.height=Pt,gt.getContext("2d").drawImage(A,0,0,tt,Pt),console.warn("THREE.WebGLRenderer: Texture has been resized from ("+J.width+"x"+J.height+") to ("+tt+"x"+Pt+")."),gt}else return"data"in A&&console.warn("THREE.WebGLRenderer: Image in DataTexture is too big ("+J.width+"x"+J.height+")."),A;return A}function m(A){return A.generateMipmaps}function p(A){i.generateMipmap(A)}function T(A){return A.isWebGLCubeRenderTarget?i.TEXTURE_CUBE_MAP:A.isWebGL3DRenderTarget?i.TEXTURE_3D:A.isWebGLArrayRenderTarget||A.isCompressedArrayTexture?i.TEXTURE_2D_ARRAY:i.TEXTURE_2D}function w(A,v,B,nt,J=!1){if(A!==null){if(i[A]!==void 0)return i[A];console.warn("THREE.WebGLRenderer: Attempt to use non-existing WebGL internal format '"+A+"'")}let tt=v;if(v===i.RED&&(B===i.FLOAT&&(tt=i.R32F),B===i.HALF_FLOAT&&(tt=i.R16F),B===i.UNSIGNED_BYTE&&(tt=i.R8)),v===i.RED_INTEGER&&(B===i.UNSIGNED_BYTE&&(tt=i.R8UI),B===i.UNSIGNED_SHORT&&(tt=i.R16UI),B===i.UNSIGNED_INT&&(tt=i.R32UI),B===i.BYTE&&(tt=i.R8I),B===i.SHORT&&(tt=i.R16I),B===i.INT&&(tt=i.R32I)),v===i.RG&&(B===i.FLOAT&&(tt=i.RG32F),B===i.HALF_FLOAT&&(tt=i.RG16F),B===i.UNSIGNED_BYTE&&(tt=i.RG8)),v===i.RG_INTEGER&&(B===i.UNSIGNED_BYTE&&(tt=i.RG8UI),B===i.UNSIGNED_SHORT&&(tt=i.RG16UI),B===i.UNSIGNED_INT&&(tt=i.RG32UI),B===i.BYTE&&(tt=i.RG8I),B===i.SHORT&&(tt=i.RG16I),B===i.INT&&(tt=i.RG32I)),v===i.RGB_INTEGER&&(B===i.UNSIGNED_BYTE&&(tt=i.RGB8UI),B===i.UNSIGNED_SHORT&&(tt=i.RGB16UI),B===i.UNSIGNED_INT&&(tt=i.RGB32UI),B===i.BYTE&&(tt=i.RGB8I),B===i.SHORT&&(tt=i.RGB16I),B===i.INT&&(tt=i.RGB32I)),v===i.RGBA_INTEGER&&(B===i.UNSIGNED_BYTE&&(tt=i.RGBA8UI),B===i.UNSIGNED_SHORT&&(tt=i.RGBA16UI),B===i.UNSIGNED_INT&&(tt=i.RGBA32UI),B===i.BYTE&&(tt=i.RGBA8I),B===i.SHORT&&(tt=i.RGBA16I),B===i.INT&&(tt=i.RGBA32I)),v===i.RGB&&B===i.UNSIGNED_INT_5_9_9_9_REV&&(tt=i.RGB9_E5),v===i.RGBA){let Pt=J?Da:de.getTransfer(nt);B===i.FLOAT&&(tt=i.RGBA32F),B===i.HALF_FLOAT&&(tt=i.RGBA16F),B===i.UNSIGNED_BYTE&&(tt=Pt===Ee?i.SRGB8_ALPHA8:i.RGBA8),B===i.UNSIGNED_SHORT_4_4_4_4&&(tt=i.RGBA4),B===i.UNSIGNED_SHORT_5_5_5_1&&(tt=i.RGB5_A1)}return(tt===i.R16F||tt===i.R32F||tt===i.RG16F||tt===i.RG32F||tt===i.RGBA16F||tt===i.RGBA32F)&&t.get("EXT_color_buffer_float"),tt}function b(A,v){let B;return A?v===null||v===As||v===wr?B=i.DEPTH24_STENCIL8:v===Di?B=i.DEPTH32F_STENCIL8:v===ao&&(B=i.DEPTH24_STENCIL8,console.warn("DepthTexture: 16 bit depth attachment is not supported with stencil. Using 24-bit attachment.")):v===null||v===As||v===wr?B=i.DEPTH_COMPONENT24:v===Di?B=i.DEPTH_COMPONENT32F:v===ao&&(B=i.DEPTH_COMPONENT16),B}function D(A,v){return m(A)===!0||A.isFramebufferTexture&&A.minFilter!==Un&&A.minFilter!==qn?Math.log2(Math.max(v.width,v.height))+1:A.mipmaps!==void 0&&A.mipmaps.length>0?A.mipmaps.length:A.isCompressedTexture&&Array.isArray(A.image)?v.mipmaps.length:1}function L(A){let v=A.target;v.removeEventListener("dispose",L),N(v),v.isVideoTexture&&u.delete(v)}function I(A){let v=A.target;v.removeEventListener("dispose",I),M(v)}function N(A){let v=n.get(A);if(v.__webglInit===void 0)return;let B=A.source,nt=h.get(B);if(nt){let J=nt[v.__cacheKey];J.usedTimes--,J.usedTimes===0&&E(A),Object.keys(nt).length===0&&h.delete(B)}n.remove(A)}function E(A){let v=n.get(A);i.deleteTexture(v.__webglTexture);let B=A.source,nt=h.get(B);delete nt[v.__cacheKey],o.memory.textures--}function M(A){let v=n.get(A);if(A.depthTexture&&(A.depthTexture.dispose(),n.remove(A.depthTexture)),A.isWebGLCubeRenderTarget)for(let nt=0;nt<6;nt++){if(Array.isArray(v.__webglFramebuffer[nt]))for(let J=0;J<v.__webglFramebuffer[nt].length;J++)i.deleteFramebuffer(v.__webglFramebuffer[nt][J]);else i.deleteFramebuffer(v.__webglFramebuffer[nt]);v.__webglDepthbuffer&&i.deleteRenderbuffer(v.__webglDepthbuffer[nt])}else{if(Array.isArray(v.__webglFramebuffer))for(let nt=0;nt<v.__webglFramebuffer.length;nt++)i.deleteFramebuffer(v.__webglFramebuffer[nt]);else i.deleteFramebuffer(v.__webglFramebuffer);if(v.__webglDepthbuffer&&i.deleteRenderbuffer(v.__webglDepthbuffer),v.__webglMultisampledFramebuffer&&i.deleteFramebuffer(v.__webglMultisampledFramebuffer),v.__webglColorRenderbuffer)for(let nt=0;nt<v.__webglColorRenderbuffer.length;nt++)v.__webglColorRenderbuffer[nt]&&i.deleteRenderbuffer(v.__webglColorRenderbuffer[nt]);v.__webglDepthRenderbuffer&&i.deleteRenderbuffer(v.__webglDepthRenderbuffer)}let B=A.textures;for(let nt=0,J=B.length;nt<J;nt++){let tt=n.get(B[nt]);tt.__webglTexture&&(i.deleteTexture(tt.__webglTexture),o.memory.textures--),n.remove(B[nt])}n.remove(A)}let C=0;function W(){C=0}function V(){let A=C;return A>=s.maxTextures&&console.warn("THREE.WebGLTextures: Trying to use "+A+" texture units while this GPU supports only "+s.maxTextures),C+=1,A}function Y(A){let v=[];return v.push(A.wrapS),v.push(A.wrapT),v.push(A.wrapR||0),v.push(A.magFilter),v.push(A.minFilter),v.push(A.anisotropy),v.push(A.internalFormat),v.push(A.format),v.push(A.type),v.push(A.generateMipmaps),v.push(A.premultiplyAlpha),v.push(A.flipY),v.push(A.unpackAlignment),v.push(A.colorSpace),v.join()}function j(A,v){let B=n.get(A);if(A.isVideoTexture&&Nt(A),A.isRenderTargetTexture===!1&&A.version>0&&B.__version!==A.version){let nt=A.image;if(nt===null)console.warn("THREE.WebGLRenderer: Texture marked for update but no image data found.");else if(nt.complete===!1)console.warn("THREE.WebGLRenderer: Texture marked for update but image is incomplete");else{$(B,A,v);return}}e.bindTexture(i.TEXTURE_2D,B.__webglTexture,i.TEXTURE0+v)}function Z(A,v){let B=n.get(A);if(A.version>0&&B.__version!==A.version){$(B,A,v);return}e.bindTexture(i.TEXTURE_2D_ARRAY,B.__webglTexture,i.TEXTURE0+v)}function et(A,v){let B=n.get(A);if(A.version>0&&B.__version!==A.version){$(B,A,v);return}e.bindTexture(i.TEXTURE_3D,B.__webglTexture,i.TEXTURE0+v)}function K(A,v){let B=n.get(A);if(A.version>0&&B.__version!==A.version){ct(B,A,v);return}e.bindTexture(i.TEXTURE_CUBE_MAP,B.__webglTexture,i.TEXTURE0+v)}let ht={[uc]:i.REPEAT,[Es]:i.CLAMP_TO_EDGE,[fc]:i.MIRRORED_REPEAT},ot={[Un]:i.NEAREST,[ag]:i.NEAREST_MIPMAP_NEAREST,[Lo]:i.NEAREST_MIPMAP_LINEAR,[qn]:i.LINEAR,[El]:i.LINEAR_MIPMAP_NEAREST,[Ts]:i.LINEAR_MIPMAP_LINEAR},mt={[fg]:i.NEVER,[xg]:i.ALWAYS,[dg]:i.LESS,[ad]:i.LEQUAL,[pg]:i.EQUAL,[_g]:i.GEQUAL,[mg]:i.GREATER,[gg]:i.NOTEQUAL};function dt(A,v){if(v.type===Di&&t.has("OES_texture_float_linear")===!1&&(v.magFilter===qn||v.magFilter===El||v.magFilter===Lo||v.magFilter===Ts||v.minFilter===qn||v.minFilter===El||v.minFilter===Lo||v.minFilter===Ts)&&console.warn("THREE.WebGLRenderer: Unable to use linear filtering with floating point textures. OES_texture_float_linear not supported on this device."),i.texParameteri(A,i.TEXTURE_WRAP_S,ht[v.wrapS]),i.texParameteri(A,i.TEXTURE_WRAP_T,ht[v.wrapT]),(A===i.TEXTURE_3D||A===i.TEXTURE_2D_ARRAY)&&i.texParameteri(A,i.TEXTURE_WRAP_R,ht[v.wrapR]),i.texParameteri(A,i.TEXTURE_MAG_FILTER,ot[v.magFilter]),i.texParameteri(A,i.TEXTURE_MIN_FILTER,ot[v.minFilter]),v.compareFunction&&(i.texParameteri(A,i.TEXTURE_COMPARE_MODE,i.COMPARE_REF_TO_TEXTURE),i.texParameteri(A,i.TEXTURE_COMPARE_FUNC,mt[v.compareFunction])),t.has("EXT_texture_filter_anisotropic")===!0){if(v.magFilter===Un||v.minFilter!==Lo&&v.minFilter!==Ts||v.type===Di&&t.has("OES_texture_float_linear")===!1)return;if(v.anisotropy>1||n.get(v).__currentAnisotropy){let B=t.get("EXT_texture_filter_anisotropic");i.texParameterf(A,B.TEXTURE_MAX_ANISOTROPY_EXT,Math.min(v.anisotropy,s.getMaxAnisotropy())),n.get(v).__currentAnisotropy=v.anisotropy}}}function Gt(A,v){let B=!1;A.__webglInit===void 0&&(A.__webglInit=!0,v.addEventListener("dispose",L));let nt=v.source,J=h.get(nt);J===void 0&&(J={},h.set(nt,J));let tt=Y(v);if(tt!==A.__cacheKey){J[tt]===void 0&&(J[tt]={texture:i.createTexture(),usedTimes:0},o.memory.textures++,B=!0),J[tt].usedTimes++;let Pt=J[A.__cacheKey];Pt!==void 0&&(J[A.__cacheKey].usedTimes--,Pt.usedTimes===0&&E(v)),A.__cacheKey=tt,A.__webglTexture=J[tt].texture}return B}function $(A,v,B){let nt=i.TEXTURE_2D;(v.isDataArrayTexture||v.isCompressedArrayTexture)&&(nt=i.TEXTURE_2D_ARRAY),v.isData3DTexture&&(nt=i.TEXTURE_3D);let J=Gt(A,v),tt=v.source;e.bindTexture(nt,A.__webglTexture,i.TEXTURE0+B);let Pt=n.get(tt);if(tt.version!==Pt.__version||J===!0){e.activeTexture(i.TEXTURE0+B);let gt=de.getPrimaries(de.workingColorSpace),yt=v.colorSpace===ts?null:de.getPrimaries(v.colorSpace),Xt=v.colorSpace===ts||gt===yt?i.NONE:i.BROWSER_DEFAULT_WEBGL;i.pixelStorei(i.UNPACK_FLIP_Y_WEBGL,v.flipY),i.pixelStorei(i.UNPACK_PREMULTIPLY_ALPHA_WEBGL,v.premultiplyAlpha),i.pixelStorei(i.UNPACK_ALIGNMENT,v.unpackAlignment),i.pixelStorei(i.UNPACK_COLORSPACE_CONVERSION_WEBGL,Xt);let at=x(v.image,!1,s.maxTextureSize);at=xe(v,at);let _t=r.convert(v.format,v.colorSpace),Bt=r.convert(v.type),Vt=w(v.internalFormat,_t,Bt,v.colorSpace,v.isVideoTexture);dt(nt,v);let St,Qt=v.mipmaps,Yt=v.isVideoTexture!==!0,ge=Pt.__version===void 0||J===!0,U=tt.dataReady,xt=D(v,at);if(v.isDepthTexture)Vt=b(v.format===Er,v.type),ge&&(Yt?e.texStorage2D(i.TEXTURE_2D,1,Vt,at.width,at.height):e.texImage2D(i.TEXTURE_2D,0,Vt,at.width,at.height,0,_t,Bt,null));else if(v.isDataTexture)if(Qt.length>0){Yt&&ge&&e.texStorage2D(i.TEXTURE_2D,xt,Vt,Qt[0].width,Qt[0].height);for(let Q=0,st=Qt.length;Q<st;Q++)St=Qt[Q],Yt?U&&e.texSubImage2D(i.TEXTURE_2D,Q,0,0,St.width,St.height,_t,Bt,St.data):e.texImage2D(i.TEXTURE_2D,Q,Vt,St.width,St.height,0,_t,Bt,St.data);v.generateMipmaps=!1}else Yt?(ge&&e.texStorage2D(i.TEXTURE_2D,xt,Vt,at.width,at.height),U&&e.texSubImage2D(i.TEXTURE_2D,0,0,0,at.width,at.height,_t,Bt,at.data)):e.texImage2D(i.TEXTURE_2D,0,Vt,at.width,at.height,0,_t,Bt,at.data);else if(v.isCompressedTexture)if(v.isCompressedArrayTexture){Yt&&ge&&e.texStorage3D(i.TEXTURE_2D_ARRAY,xt,Vt,Qt[0].width,Qt[0].height,at.depth);for(let Q=0,st=Qt.length;Q<st;Q++)if(St=Qt[Q],v.format!==ri)if(_t!==null)if(Yt){if(U)if(v.layerUpdates.size>0){let wt=Vf(St.width,St.height,v.format,v.type);for(let bt of v.layerUpdates){let Jt=St.data.subarray(bt*wt/St.data.BYTES_PER_ELEMENT,(bt+1)*wt/St.data.BYTES_PER_ELEMENT);e.compressedTexSubImage3D(i.TEXTURE_2D_ARRAY,Q,0,0,bt,St.width,St.height,1,_t,Jt)}v.clearLayerUpdates()}else e.compressedTexSubImage3D(i.TEXTURE_2D_ARRAY,Q,0,0,0,St.width,St.height,at.depth,_t,St.data)}else e.compressedTexImage3D(i.TEXTURE_2D_ARRAY,Q,Vt,St.width,St.height,at.depth,0,St.data,0,0);else console.warn("THREE.WebGLRenderer: Attempt to load unsupported compressed texture format in .uploadTexture()");else Yt?U&&e.texSubImage3D(i.TEXTURE_2D_ARRAY,Q,0,0,0,St.width,St.height,at.depth,_t,Bt,St.data):e.texImage3D(i.TEXTURE_2D_ARRAY,Q,Vt,St.width,St.height,at.depth,0,_t,Bt,St.data)}else{Yt&&ge&&e.texStorage2D(i.TEXTURE_2D,xt,Vt,Qt[0].width,Qt[0].height);for(let Q=0,st=Qt.length;Q<st;Q++)St=Qt[Q],v.format!==ri?_t!==null?Yt?U&&e.compressedTexSubImage2D(i.TEXTURE_2D,Q,0,0,St.width,St.height,_t,St.data):e.compressedTexImage2D(i.TEXTURE_2D,Q,Vt,St.width,St.height,0,St.data):console.warn("THREE.WebGLRenderer: Attempt to load unsupported compressed texture format in .uploadTexture()"):Yt?U&&e.texSubImage2D(i.TEXTURE_2D,Q,0,0,St.width,St.height,_t,Bt,St.data):e.texImage2D(i.TEXTURE_2D,Q,Vt,St.width,St.height,0,_t,Bt,St.data)}else if(v.isDataArrayTexture)if(Yt){if(ge&&e.texStorage3D(i.TEXTURE_2D_ARRAY,xt,Vt,at.width,at.height,at.depth),U)if(v.layerUpdates.size>0){let Q=Vf(at.width,at.height,v.format,v.type);for(let st of v.layerUpdates){let wt=at.data.subarray(st*Q/at.data.BYTES_PER_ELEMENT,(st+1)*Q/at.data.BYTES_PER_ELEMENT);e.texSubImage3D(i.TEXTURE_2D_ARRAY,0,0,0,st,at.width,at.height,1,_t,Bt,wt)}v.clearLayerUpdates()}else e.texSubImage3D(i.TEXTURE_2D_ARRAY,0,0,0,0,at.width,at.height,at.depth,_t,Bt,at.data)}else e.texImage3D(i.TEXTURE_2D_ARRAY,0,Vt,at.width,at.height,at.depth,0,_t,Bt,at.data);else if(v.isData3DTexture)Yt?(ge&&e.texStorage3D(i.TEXTURE_3D,xt,Vt,at.width,at.height,at.depth),U&&e.texSubImage3D(i.TEXTURE_3D,0,0,0,0,at.width,at.height,at.depth,_t,Bt,at.data)):e.texImage3D(i.TEXTURE_3D,0,Vt,at.width,at.height,at.depth,0,_t,Bt,at.data);else if(v.isFramebufferTexture){if(ge)if(Yt)e.texStorage2D(i.TEXTURE_2D,xt,Vt,at.width,at.height);else{let Q=at.width,st=at.height;for(let wt=0;wt<xt;wt++)e.texImage2D(i.TEXTURE_2D,wt,Vt,Q,st,0,_t,Bt,null),Q>>=1,st>>=1}}else if(Qt.length>0){if(Yt&&ge){let Q=Ft(Qt[0]);e.texStorage2D(i.TEXTURE_2D,xt,Vt,Q.width,Q.height)}for(let Q=0,st=Qt.length;Q<st;Q++)St=Qt[Q],Yt?U&&e.texSubImage2D(i.TEXTURE_2D,Q,0,0,_t,Bt,St):e.texImage2D(i.TEXTURE_2D,Q,Vt,_t,Bt,St);v.generateMipmaps=!1}else if(Yt){if(ge){let Q=Ft(at);e.texStorage2D(i.TEXTURE_2D,xt,Vt,Q.width,Q.height)}U&&e.texSubImage2D(i.TEXTURE_2D,0,0,0,_t,Bt,at)}else e.texImage2D(i.TEXTURE_2D,0,Vt,_t,Bt,at);m(v)&&p(nt),Pt.__version=tt.version,v.onUpdate&&v.onUpdate(v)}A.__version=v.version}function ct(A,v,B){if(v.image.length!==6)return;let nt=Gt(A,v),J=v.source;e.bindTexture(i.TEXTURE_CUBE_MAP,A.__webglTexture,i.TEXTURE0+B);let tt=n.get(J);if(J.version!==tt.__version||nt===!0){e.activeTexture(i.TEXTURE0+B);let Pt=de.getPrimaries(de.workingColorSpace),gt=v.colorSpace===ts?null:de.getPrimaries(v.colorSpace),yt=v.colorSpace===ts||Pt===gt?i.NONE:i.BROWSER_DEFAULT_WEBGL;i.pixelStorei(i.UNPACK_FLIP_Y_WEBGL,v.flipY),i.pixelStorei(i.UNPACK_PREMULTIPLY_ALPHA_WEBGL,v.premultiplyAlpha),i.pixelStorei(i.UNPACK_ALIGNMENT,v.unpackAlignment),i.pixelStorei(i.UNPACK_COLORSPACE_CONVERSION_WEBGL,yt);let Xt=v.isCompressedTexture||v.image[0].isCompressedTexture,at=v.image[0]&&v.image[0].isDataTexture,_t=[];for(let st=0;st<6;st++)!Xt&&!at?_t[st]=x(v.image[st],!0,s.maxCubemapSize):_t[st]=at?v.image[st].image:v.image[st],_t[st]=xe(v,_t[st]);let Bt=_t[0],Vt=r.convert(v.format,v.colorSpace),St=r.convert(v.type),Qt=w(v.internalFormat,Vt,St,v.colorSpace),Yt=v.isVideoTexture!==!0,ge=tt.__version===void 0||nt===!0,U=J.dataReady,xt=D(v,Bt);dt(i.TEXTURE_CUBE_MAP,v);let Q;if(Xt){Yt&&ge&&e.texStorage2D(i.TEXTURE_CUBE_MAP,xt,Qt,Bt.width,Bt.height);for(let st=0;st<6;st++){Q=_t[st].mipmaps;for(let wt=0;wt<Q.length;wt++){let bt=Q[wt];v.format!==ri?Vt!==null?Yt?U&&e.compressedTexSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt,0,0,bt.width,bt.height,Vt,bt.data):e.compressedTexImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt,Qt,bt.width,bt.height,0,bt.data):console.warn("THREE.WebGLRenderer: Attempt to load unsupported compressed texture format in .setTextureCube()"):Yt?U&&e.texSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt,0,0,bt.width,bt.height,Vt,St,bt.data):e.texImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt,Qt,bt.width,bt.height,0,Vt,St,bt.data)}}}else{if(Q=v.mipmaps,Yt&&ge){Q.length>0&&xt++;let st=Ft(_t[0]);e.texStorage2D(i.TEXTURE_CUBE_MAP,xt,Qt,st.width,st.height)}for(let st=0;st<6;st++)if(at){Yt?U&&e.texSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,0,0,0,_t[st].width,_t[st].height,Vt,St,_t[st].data):e.texImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,0,Qt,_t[st].width,_t[st].height,0,Vt,St,_t[st].data);for(let wt=0;wt<Q.length;wt++){let Jt=Q[wt].image[st].image;Yt?U&&e.texSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt+1,0,0,Jt.width,Jt.height,Vt,St,Jt.data):e.texImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt+1,Qt,Jt.width,Jt.height,0,Vt,St,Jt.data)}}else{Yt?U&&e.texSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,0,0,0,Vt,St,_t[st]):e.texImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,0,Qt,Vt,St,_t[st]);for(let wt=0;wt<Q.length;wt++){let bt=Q[wt];Yt?U&&e.texSubImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt+1,0,0,Vt,St,bt.image[st]):e.texImage2D(i.TEXTURE_CUBE_MAP_POSITIVE_X+st,wt+1,Qt,Vt,St,bt.image[st])}}}m(v)&&p(i.TEXTURE_CUBE_MAP),tt.__version=J.version,v.onUpdate&&v.onUpdate(v)}A.__version=v.version}function It(A,v,B,nt,J,tt){let Pt=r.convert(B.format,B.colorSpace),gt=r.convert(B.type),yt=w(B.internalFormat,Pt,gt,B.colorSpace),Xt=n.get(v),at=n.get(B);if(at.__renderTarget=v,!Xt.__hasExternalTextures){let _t=Math.max(1,v.width>>tt),Bt=Math.max(1,v.height>>tt);J===i.TEXTURE_3D||J===i.TEXTURE_2D_ARRAY?e.texImage3D(J,tt,yt,_t,Bt,v.depth,0,Pt,gt,null):e.texImage2D(J,tt,yt,_t,Bt,0,Pt,gt,null)}e.bindFramebuffer(i.FRAMEBUFFER,A),Zt(v)?a.framebufferTexture2DMultisampleEXT(i.FRAMEBUFFER,nt,J,at.__webglTexture,0,ee(v)):(J===i.TEXTURE_2D||J>=i.TEXTURE_CUBE_MAP_POSITIVE_X&&J<=i.TEXTURE_CUBE_MAP_NEGATIVE_Z)&&i.framebufferTexture2D(i.FRAMEBUFFER,nt,J,at.__webglTexture,tt),e.bindFramebuffer(i.FRAMEBUFFER,null)}function ut(A,v,B){if(i.bindRenderbuffer(i.RENDERBUFFER,A),v.depthBuffer){let nt=v.depthTexture,J=nt&&nt.isDepthTexture?nt.type:null,tt=b(v.stencilBuffer,J),Pt=v.stencilBuffer?i.DEPTH_STENCIL_ATTACHMENT:i.DEPTH_ATTACHMENT,gt=ee(v);Zt(v)?a.renderbufferStorageMultisampleEXT(i.RENDERBUFFER,gt,tt,v.width,v.height):B?i.renderbufferStorageMultisample(i.RENDERBUFFER,gt,tt,v.width,v.height):i.renderbufferStorage(i.RENDERBUFFER,tt,v.width,v.height),i.framebufferRenderbuffer(i.FRAMEBUFFER,Pt,i.RENDERBUFFER,A)}else{let nt=v.textures;for(let J=0;J<nt.length;J++){let tt=nt[J],Pt=r.convert(tt.format,tt.colorSpace),gt=r.convert(tt.type),yt=w(tt.internalFormat,Pt,gt,tt.colorSpace),Xt=ee(v);B&&Zt(v)===!1?i.renderbufferStorageMultisample(i.RENDERBUFFER,Xt,yt,v.width,v.height):Zt(v)?a.renderbufferStorageMultisampleEXT(i.RENDERBUFFER,Xt,yt,v.width,v.height):i.renderbufferStorage(i.RENDERBUFFER,yt,v.width,v.height)}}i.bindRenderbuffer(i.RENDERBUFFER,null)}function Dt(A,v){if(v&&v.isWebGLCubeRenderTarget)throw new Error("Depth Texture with cube render targets is not supported");if(e.bindFramebuffer(i.FRAMEBUFFER,A),!(v.depthTexture&&v.depthTexture.isDepthTexture))throw new Error("renderTarget.depthTexture must be an instance of THREE.DepthTexture");let nt=n.get(v.depthTexture);nt.__renderTarget=v,(!nt.__webglTexture||v.depthTexture.image.width!==v.width||v.depthTexture.image.height!==v.height)&&(v.depthTexture.image.width=v.width,v.depthTexture.image.height=v.height,v.depthTexture.needsUpdate=!0),j(v.depthTexture,0);let J=nt.__webglTexture,tt=ee(v);if(v.depthTexture.format===xr)Zt(v)?a.framebufferTexture2DMultisampleEXT(i.FRAMEBUFFER,i.DEPTH_ATTACHMENT,i.TEXTURE_2D,J,0,tt):i.framebufferTexture2D(i.FRAMEBUFFER,i.DEPTH_ATTACHMENT,i.TEXTURE_2D,J,0);else if(v.depthTexture.format===Er)Zt(v)?a.framebufferTexture2DMultisampleEXT(i.FRAMEBUFFER,i.DEPTH_STENCIL_ATTACHMENT,i.TEXTURE_2D,J,0,tt):i.framebufferTexture2D(i.FRAMEBUFFER,i.DEPTH_STENCIL_ATTACHMENT,i.TEXTURE_2D,J,0);else throw new Error("Unknown depthTexture format")}function Ht(A){let v=n.get(A),B=A.isWebGLCubeRenderTarget===!0;if(v.__boundDepthTexture!==A.depthTexture){let nt=A.depthTexture;if(v.__depthDisposeCallback&&v.__depthDisposeCallback(),nt){let J=()=>{delete v.__boundDepthTexture,delete v.__depthDisposeCallback,nt.removeEventListener("dispose",J)};nt.addEventListener("dispose",J),v.__depthDisposeCallback=J}v.__boundDepthTexture=nt}if(A.depthTexture&&!v.__autoAllocateDepthBuffer){if(B)throw new Error("target.depthTexture not supported in Cube render targets");Dt(v.__webglFramebuffer,A)}else if(B){v.__webglDepthbuffer=[];for(let nt=0;nt<6;nt++)if(e.bindFramebuffer(i.FRAMEBUFFER,v.__webglFramebuffer[nt]),v.__webglDepthbuffer[nt]===void 0)v.__webglDepthbuffer[nt]=i.createRenderbuffer(),ut(v.__webglDepthbuffer[nt],A,!1);else{let J=A.stencilBuffer?i.DEPTH_STENCIL_ATTACHMENT:i.DEPTH_ATTACHMENT,tt=v.__webglDepthbuffer[nt];i.bindRenderbuffer(i.RENDERBUFFER,tt),i.framebufferRenderbuffer(i.FRAMEBUFFER,J,i.RENDERBUFFER,tt)}}else if(e.bindFramebuffer(i.FRAMEBUFFER,v.__webglFramebuffer),v.__webglDepthbuffer===void 0)v.__webglDepthbuffer=i.createRenderbuffer(),ut(v.__webglDepthbuffer,A,!1);else{let nt=A.stencilBuffer?i.DEPTH_STENCIL_ATTACHMENT:i.DEPTH_ATTACHMENT,J=v.__webglDepthbuffer;i.bindRenderbuffer(i.RENDERBUFFER,J),i.framebufferRenderbuffer(i.FRAMEBUFFER,nt,i.RENDERBUFFER,J)}e.bindFramebuffer(i.FRAMEBUFFER,null)}function zt(A,v,B){let nt=n.get(A);v!==void 0&&It(nt.__webglFramebuffer,A,A.texture,i.COLOR_ATTACHMENT0,i.TEXTURE_2D,0),B!==void 0&&Ht(A)}function se(A){let v=A.texture,B=n.get(A),nt=n.get(v);A.addEventListener("dispose",I);let J=A.textures,tt=A.isWebGLCubeRenderTarget===!0,Pt=J.length>1;if(Pt||(nt.__webglTexture===void 0&&(nt.__webglTexture=i.createTexture()),nt.__version=v.version,o.memory.textures++),tt){B.__webglFramebuffer=[];for(let gt=0;gt<6;gt++)if(v.mipmaps&&v.mipmaps.length>0){B.__webglFramebuffer[gt]=[];for(let yt=0;yt<v.mipmaps.length;yt++)B.__webglFramebuffer[gt][yt]=i.createFramebuffer()}else B.__webglFramebuffer[gt]=i.createFramebuffer()}else{if(v.mipmaps&&v.mipmaps.length>0){B.__webglFramebuffer=[];for(let gt=0;gt<v.mipmaps.length;gt++)B.__webglFramebuffer[gt]=i.createFramebuffer()}else B.__webglFramebuffer=i.createFramebuffer();if(Pt)for(let gt=0,yt=J.length;gt<yt;gt++){let Xt=n.get(J[gt]);Xt.__webglTexture===void 0&&(Xt.__webglTexture=i.createTexture(),o.memory.textures++)}if(A.samples>0&&Zt(A)===!1){B.__webglMultisampledFramebuffer=i.createFramebuffer(),B.__webglColorRenderbuffer=[],e.bindFramebuffer(i.FRAMEBUFFER,B.__webglMultisampledFramebuffer);for(let gt=0;gt<J.length;gt++){let yt=J[gt];B.__webglColorRenderbuffer[gt]=i.createRenderbuffer(),i.bindRenderbuffer(i.RENDERBUFFER,B.__webglColorRenderbuffer[gt]);let Xt=r.convert(yt.format,yt.colorSpace),at=r.convert(yt.type),_t=w(yt.internalFormat,Xt,at,yt.colorSpace,A.isXRRenderTarget===!0),Bt=ee(A);i.renderbufferStorageMultisample(i.RENDERBUFFER,Bt,_t,A.width,A.height),i.framebufferRenderbuffer(i.FRAMEBUFFER,i.COLOR_ATTACHMENT0+gt,i.RENDERBUFFER,B.__webglColorRenderbuffer[gt])}i.bindRenderbuffer(i.RENDERBUFFER,null),A.depthBuffer&&(B.__webglDepthRenderbuffer=i.createRenderbuffer(),ut(B.__webglDepthRenderbuffer,A,!0)),e.bindFramebuffer(i.FRAMEBUFFER,null)}}if(tt){e.bindTexture(i.TEXTURE_CUBE_MAP,nt.__webglTexture),dt(i.TEXTURE_CUBE_MAP,v);for(let gt=0;gt<6;gt++)if(v.mipmaps&&v.mipmaps.length>0)for(let yt=0;yt<v.mipmaps.length;yt++)It(B.__webglFramebuffer[gt][yt],A,v,i.COLOR_ATTACHMENT0,i.TEXTURE_CUBE_MAP_POSITIVE_X+gt,yt);else It(B.__webglFramebuffer[gt],A,v,i.COLOR_ATTACHMENT0,i.TEXTURE_CUBE_MAP_POSITIVE_X+gt,0);m(v)&&p(i.TEXTURE_CUBE_MAP),e.unbindTexture()}else if(Pt){for(let gt=0,yt=J.length;gt<yt;gt++){let Xt=J[gt],at=n.get(Xt);e.bindTexture(i.TEXTURE_2D,at.__webglTexture),dt(i.TEXTURE_2D,Xt),It(B.__webglFramebuffer,A,Xt,i.COLOR_ATTACHMENT0+gt,i.TEXTURE_2D,0),m(Xt)&&p(i.TEXTURE_2D)}e.unbindTexture()}else{let gt=i.TEXTURE_2D;if((A.isWebGL3DRenderTarget||A.isWebGLArrayRenderTarget)&&(gt=A.isWebGL3DRenderTarget?i.TEXTURE_3D:i.TEXTURE_2D_ARRAY),e.bindTexture(gt,nt.__webglTexture),dt(gt,v),v.mipmaps&&v.mipmaps.length>0)for(let yt=0;yt<v.mipmaps.length;yt++)It(B.__webglFramebuffer[yt],A,v,i.COLOR_ATTACHMENT0,gt,yt);else It(B.__webglFramebuffer,A,v,i.COLOR_ATTACHMENT0,gt,0);m(v)&&p(gt),e.unbindTexture()}A.depthBuffer&&Ht(A)}function jt(A){let v=A.textures;for(let B=0,nt=v.length;B<nt;B++){let J=v[B];if(m(J)){let tt=T(A),Pt=n.get(J).__webglTexture;e.bindTexture(tt,Pt),p(tt),e.unbindTexture()}}}let Se=[],z=[];function $e(A){if(A.samples>0){if(Zt(A)===!1){let v=A.textures,B=A.width,nt=A.height,J=i.COLOR_BUFFER_BIT,tt=A.stencilBuffer?i.DEPTH_STENCIL_ATTACHMENT:i.DEPTH_ATTACHMENT,Pt=n.get(A),gt=v.length>1;if(gt)for(let yt=0;yt<v.length;yt++)e.bindFramebuffer(i.FRAMEBUFFER,Pt.__webglMultisampledFramebuffer),i.framebufferRenderbuffer(i.FRAMEBUFFER,i.COLOR_ATTACHMENT0+yt,i.RENDERBUFFER,null),e.bindFramebuffer(i.FRAMEBUFFER,Pt.__webglFramebuffer),i.framebufferTexture2D(i.DRAW_FRAMEBUFFER,i.COLOR_ATTACHMENT0+yt,i.TEXTURE_2D,null,0);e.bindFramebuffer(i.READ_FRAMEBUFFER,Pt.__webglMultisampledFramebuffer),e.bindFramebuffer(i.DRAW_FRAMEBUFFER,Pt.__webglFramebuffer);for(let yt=0;yt<v.length;yt++){if(A.resolveDepthBuffer&&(A.depthBuffer&&(J|=i.DEPTH_BUFFER_BIT),A.stencilBuffer&&A.resolveStencilBuffer&&(J|=i.STENCIL_BUFFER_BIT)),gt){i.framebufferRenderbuffer(i.READ_FRAMEBUFFER,i.COLOR_ATTACHMENT0,i.RENDERBUFFER,Pt.__webglColorRenderbuffer[yt]);let Xt=n.get(v[yt]).__webglTexture;i.framebufferTexture2D(i.DRAW_FRAMEBUFFER,i.COLOR_ATTACHMENT0,i.TEXTURE_2D,Xt,0)}i.blitFramebuffer(0,0,B,nt,0,0,B,nt,J,i.NEAREST),l===!0&&(Se.length=0,z.length=0,Se.push(i.COLOR_ATTACHMENT0+yt),A.depthBuffer&&A.resolveDepthBuffer===!1&&(Se.push(tt),z.push(tt),i.invalidateFramebuffer(i.DRAW_FRAMEBUFFER,z)),i.invalidateFramebuffer(i.READ_FRAMEBUFFER,Se))}if(e.bindFramebuffer(i.READ_FRAMEBUFFER,null),e.bindFramebuffer(i.DRAW_FRAMEBUFFER,null),gt)for(let yt=0;yt<v.length;yt++){e.bindFramebuffer(i.FRAMEBUFFER,Pt.__webglMultisampledFramebuffer),i.framebufferRenderbuffer(i.FRAMEBUFFER,i.COLOR_ATTACHMENT0+yt,i.RENDERBUFFER,Pt.__webglColorRenderbuffer[yt]);let Xt=n.get(v[yt]).__webglTexture;e.bindFramebuffer(i.FRAMEBUFFER,Pt.__webglFramebuffer),i.framebufferTexture2D(i.DRAW_FRAMEBUFFER,i.COLOR_ATTACHMENT0+yt,i.TEXTURE_2D,Xt,0)}e.bindFramebuffer(i.DRAW_FRAMEBUFFER,Pt.__webglMultisampledFramebuffer)}else if(A.depthBuffer&&A.resolveDepthBuffer===!1&&l){let v=A.stencilBuffer?i.DEPTH_STENCIL_ATTACHMENT:i.DEPTH_ATTACHMENT;i.invalidateFramebuffer(i.DRAW_FRAMEBUFFER,[v])}}}function ee(A){return Math.min(s.maxSamples,A.samples)}function Zt(A){let v=n.get(A);return A.samples>0&&t.has("WEBGL_multisampled_render_to_texture")===!0&&v.__useRenderToTexture!==!1}function Nt(A){let v=o.render.frame;u.get(A)!==v&&(u.set(A,v),A.update())}function xe(A,v){let B=A.colorSpace,nt=A.format,J=A.type;return A.isCompressedTexture===!0||A.isVideoTexture===!0||B!==rs&&B!==ts&&(de.getTransfer(B)===Ee?(nt!==ri||J!==Oi)&&console.warn("THREE.WebGLTextures: sRGB encoded textures have to use RGBAFormat and UnsignedByteType."):console.error("THREE.WebGLTextures: Unsupported texture color space:",B)),v}function Ft(A){return typeof HTMLImageElement<"u"&&A instanceof HTMLImageElement?(c.width=A.naturalWidth||A.width,c.height=A.naturalHeight||A.height):typeof VideoFrame<"u"&&A instanceof VideoFrame?(c.width=A.displayWidth,c.height=A.displayHeight):(c.width=A.width,c.height=A.height),c}this.allocateTextureUnit=V,this.resetTextureUnits=W,this.setTexture2D=j,this.setTexture2DArray=Z,this.setTexture3D=et,this.setTextureCube=K,this.rebindTextures=zt,this.setupRenderTarget=se,this.updateRenderTargetMipmap=jt,this.updateMultisampleRenderTarget=$e,this.setupDepthRenderbuffer=Ht,this.setupFrameBufferTexture=It,this.useMultisampledRTT=Zt}function Ey(i,t){function e(n,s=ts){let r,o=de.getTransfer(s);if(n===Oi)return i.UNSIGNED_BYTE;if(n===xh)return i.UNSIGNED_SHORT_4_4_4_4;if(n===vh)return i.UNSIGNED_SHORT_5_5_5_1;if(n===Qf)return i.UNSIGNED_INT_5_9_9_9_REV;if(n===Kf)return i.BYTE;if(n===jf)return i.SHORT;if(n===ao)return i.UNSIGNED_SHORT;if(n===_h)return i.INT;if(n===As)return i.UNSIGNED_INT;if(n===Di)return i.FLOAT;if(n===po)return i.HALF_FLOAT;if(n===td)return i.ALPHA;if(n===ed)return i.RGB;if(n===ri)return i.RGBA;if(n===nd)return i.LUMINANCE;if(n===id)return i.LUMINANCE_ALPHA;if(n===xr)return i.DEPTH_COMPONENT;if(n===Er)return i.DEPTH_STENCIL;if(n===sd)return i.RED;if(n===yh)return i.RED_INTEGER;if(n===rd)return i.RG;if(n===Mh)return i.RG_INTEGER;if(n===Sh)return i.RGBA_INTEGER;if(n===sa||n===ra||n===oa||n===aa)if(o===Ee)if(r=t.get("WEBGL_compressed_texture_s3tc_srgb"),r!==null){if(n===sa)return r.COMPRESSED_SRGB_S3TC_DXT1_EXT;if(n===ra)return r.COMPRESSED_SRGB_ALPHA_S3TC_DXT1_EXT;if(n===oa)return r.COMPRESSED_SRGB_ALPHA_S3TC_DXT3_EXT;if(n===aa)return r.COMPRESSED_SRGB_ALPHA_S3TC_DXT5_EXT}else return null;else if(r=t.get("WEBGL_compressed_texture_s3tc"),r!==null){if(n===sa)return r.COMPRESSED_RGB_S3TC_DXT1_EXT;if(n===ra)return r.COMPRESSED_RGBA_S3TC_DXT1_EXT;if(n===oa)return r.COMPRESSED_RGBA_S3TC_DXT3_EXT;if(n===aa)return r.COMPRESSED_RGBA_S3TC_DXT5_EXT}else return null;if(n===dc||n===pc||n===mc||n===gc)if(r=t.get("WEBGL_compressed_texture_pvrtc"),r!==null){if(n===dc)return r.COMPRESSED_RGB_PVRTC_4BPPV1_IMG;if(n===pc)return r.COMPRESSED_RGB_PVRTC_2BPPV1_IMG;if(n===mc)return r.COMPRESSED_RGBA_PVRTC_4BPPV1_IMG;if(n===gc)return r.COMPRESSED_RGBA_PVRTC_2BPPV1_IMG}else return null;if(n===_c||n===xc||n===vc)if(r=t.get("WEBGL_compressed_texture_etc"),r!==null){if(n===_c||n===xc)return o===Ee?r.COMPRESSED_SRGB8_ETC2:r.COMPRESSED_RGB8_ETC2;if(n===vc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ETC2_EAC:r.COMPRESSED_RGBA8_ETC2_EAC}else return null;if(n===yc||n===Mc||n===Sc||n===bc||n===wc||n===Ec||n===Tc||n===Ac||n===Cc||n===Rc||n===Pc||n===Ic||n===Lc||n===Dc)if(r=t.get("WEBGL_compressed_texture_astc"),r!==null){if(n===yc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_4x4_KHR:r.COMPRESSED_RGBA_ASTC_4x4_KHR;if(n===Mc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_5x4_KHR:r.COMPRESSED_RGBA_ASTC_5x4_KHR;if(n===Sc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_5x5_KHR:r.COMPRESSED_RGBA_ASTC_5x5_KHR;if(n===bc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_6x5_KHR:r.COMPRESSED_RGBA_ASTC_6x5_KHR;if(n===wc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_6x6_KHR:r.COMPRESSED_RGBA_ASTC_6x6_KHR;if(n===Ec)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_8x5_KHR:r.COMPRESSED_RGBA_ASTC_8x5_KHR;if(n===Tc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_8x6_KHR:r.COMPRESSED_RGBA_ASTC_8x6_KHR;if(n===Ac)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_8x8_KHR:r.COMPRESSED_RGBA_ASTC_8x8_KHR;if(n===Cc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_10x5_KHR:r.COMPRESSED_RGBA_ASTC_10x5_KHR;if(n===Rc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_10x6_KHR:r.COMPRESSED_RGBA_ASTC_10x6_KHR;if(n===Pc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_10x8_KHR:r.COMPRESSED_RGBA_ASTC_10x8_KHR;if(n===Ic)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_10x10_KHR:r.COMPRESSED_RGBA_ASTC_10x10_KHR;if(n===Lc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_12x10_KHR:r.COMPRESSED_RGBA_ASTC_12x10_KHR;if(n===Dc)return o===Ee?r.COMPRESSED_SRGB8_ALPHA8_ASTC_12x12_KHR:r.COMPRESSED_RGBA_ASTC_12x12_KHR}else return null;if(n===la||n===Nc||n===Uc)if(r=t.get("EXT_texture_compression_bptc"),r!==null){if(n===la)return o===Ee?r.COMPRESSED_SRGB_ALPHA_BPTC_UNORM_EXT:r.COMPRESSED_RGBA_BPTC_UNORM_EXT;if(n===Nc)return r.COMPRESSED_RGB_BPTC_SIGNED_FLOAT_EXT;if(n===Uc)return r.COMPRESSED_RGB_BPTC_UNSIGNED_FLOAT_EXT}else return null;if(n===od||n===Oc||n===Fc||n===Bc)if(r=t.get("EXT_texture_compression_rgtc"),r!==null){if(n===la)return r.COMPRESSED_RED_RGTC1_EXT;if(n===Oc)return r.COMPRESSED_SIGNED_RED_RGTC1_EXT;if(n===Fc)return r.COMPRESSED_RED_GREEN_RGTC2_EXT;if(n===Bc)return r.COMPRESSED_SIGNED_RED_GREEN_RGTC2_EXT}else return null;return n===wr?i.UNSIGNED_INT_24_8:i[n]!==void 0?i[n]:null}return{convert:e}}var Qc=class extends Nn{constructor(t=[]){super(),this.isArrayCamera=!0,this.cameras=t}},gr=class extends Fn{constructor(){super(),this.isGroup=!0,this.type="Group"}},Ty={type:"move"},oo=class{constructor(){this._targetRay=null,this._grip=null,this._hand=null}getHandSpace(){return this._hand===null&&(this._hand=new gr,this._hand.matrixAutoUpdate=!1,this._hand.visible=!1,this._hand.joints={},this._hand.inputState={pinching:!1}),this._hand}getTargetRaySpace(){return this._targetRay===null&&(this._targetRay=new gr,this._targetRay.matrixAutoUpdate=!1,this._targetRay.visible=!1,this._targetRay.hasLinearVelocity=!1,this._targetRay.linearVelocity=new H,this._targetRay.hasAngularVelocity=!1,this._targetRay.angularVelocity=new H),this._targetRay}getGripSpace(){return this._grip===null&&(this._grip=new gr,this._grip.matrixAutoUpdate=!1,this._grip.visible=!1,this._grip.hasLinearVelocity=!1,this._grip.linearVelocity=new H,this._grip.hasAngularVelocity=!1,this._grip.angularVelocity=new H),this._grip}dispatchEvent(t){return this._targetRay!==null&&this._targetRay.dispatchEvent(t),this._grip!==null&&this._grip.dispatchEvent(t),this._hand!==null&&this._hand.dispatchEvent(t),this}connect(t){if(t&&t.hand){let e=this._hand;if(e)for(let n of t.hand.values())this._getHandJoint(e,n)}return this.dispatchEvent({type:"connected",data:t}),this}disconnect(t){return this.dispatchEvent({type:"disconnected",data:t}),this._targetRay!==null&&(this._targetRay.visible=!1),this._grip!==null&&(this._grip.visible=!1),this._hand!==null&&(this._hand.visible=!1),this}update(t,e,n){let s=null,r=null,o=null,a=this._targetRay,l=this._grip,c=this._hand;if(t&&e.session.visibilityState!=="visible-blurred"){if(c&&t.hand){o=!0;for(let x of t.hand.values()){let m=e.getJointPose(x,n),p=this._getHandJoint(c,x);m!==null&&(p.matrix.fromArray(m.transform.matrix),p.matrix.decompose(p.position,p.rotation,p.scale),p.matrixWorldNeedsUpdate=!0,p.jointRadius=m.radius),p.visible=m!==null}let u=c.joints["index-finger-tip"],f=c.joints["thumb-tip"],h=u.position.distanceTo(f.position),d=.02,_=.005;c.inputState.pinching&&h>d+_?(c.inputState.pinching=!1,this.dispatchEvent({type:"pinchend",handedness:t.handedness,target:this})):!c.inputState.pinching&&h<=d-_&&(c.inputState.pinching=!0,this.dispatchEvent({type:"pinchstart",handedness:t.handedness,target:this}))}else l!==null&&t.gripSpace&&(r=e.getPose(t.gripSpace,n),r!==null&&(l.matrix.fromArray(r.transform.matrix),l.matrix.decompose(l.position,l.rotation,l.scale),l.matrixWorldNeedsUpdate=!0,r.linearVelocity?(l.hasLinearVelocity=!0,l.linearVelocity.copy(r.linearVelocity)):l.hasLinearVelocity=!1,r.angularVelocity?(l.hasAngularVelocity=!0,l.angularVelocity.copy(r.angularVelocity)):l.hasAngularVelocity=!1));a!==null&&(s=e.getPose(t.targetRaySpace,n),s===null&&r!==null&&(s=r),s!==null&&(a.matrix.fromArray(s.transform.matrix),a.matrix.decompose(a.position,a.rotation,a.scale),a.matrixWorldNeedsUpdate=!0,s.linearVelocity?(a.hasLinearVelocity=!0,a.linearVelocity.copy(s.linearVelocity)):a.hasLinearVelocity=!1,s.angularVelocity?(a.hasAngularVelocity=!0,a.angularVelocity.copy(s.angularVelocity)):a.hasAngularVelocity=!1,this.dispatchEvent(Ty)))}return a!==null&&(a.visible=s!==null),l!==null&&(l.visible=r!==null),c!==null&&(c.visible=o!==null),this}_getHandJoint(t,e){if(t.joints[e.jointName]===void 0){let n=new gr;n.matrixAutoUpdate=!1,n.visible=!1,t.joints[e.jointName]=n,t.add(n)}return t.joints[e.jointName]}},Ay=`
void main() {

	gl_Position = vec4( position, 1.0 );

}`,Cy=`
uniform sampler2DArray depthColor;
uniform float depthWidth;
uniform float depthHeight;

void main() {

	vec2 coord = vec2( gl_FragCoord.x / depthWidth, gl_FragCoord.y / depthHeight );

	if ( coord.x >= 1.0 ) {

		gl_FragDepth = texture( depthColor, vec3( coord.x - 1.0, coord.y, 1 ) ).r;

	} else {

		gl_FragDepth = texture( depthColor, vec3( coord.x, coord.y, 0 ) ).r;

	}

}`,th=class{constructor(){this.texture=null,this.mesh=null,this.depthNear=0,this.depthFar=0}init(t,e,n){if(this.texture===null){let s=new On,r=t.properties.get(s);r.__webglTexture=e.texture,(e.depthNear!=n.depthNear||e.depthFar!=n.depthFar)&&(this.depthNear=e.depthNear,this.depthFar=e.depthFar),this.texture=s}}getMesh(t){if(this.texture!==null&&this.mesh===null){let e=t.cameras[0].viewport,n=new An({vertexShader:Ay,fragmentShader:Cy,uniforms:{depthColor:{value:this.texture},depthWidth:{value:e.z},depthHeight:{value:e.w}}});this.mesh=new En(new Ma(20,20),n)}return this.mesh}reset(){this.texture=null,this.mesh=null}getDepthTexture(){return this.texture}},eh=class extends Fi{constructor(t,e){super();let n=this,s=null,r=1,o=null,a="local-floor",l=1,c=null,u=null,f=null,h=null,d=null,_=null,x=new th,m=e.getContextAttributes(),p=null,T=null,w=[],b=[],D=new ie,L=null,I=new Nn;I.viewport=new De;let N=new Nn;N.viewport=new De;let E=[I,N],M=new Qc,C=null,W=null;this.cameraAutoUpdate=!0,this.enabled=!1,this.isPresenting=!1,this.getController=function($){let ct=w[$];return ct===void 0&&(ct=new oo,w[$]=ct),ct.getTargetRaySpace()},this.getControllerGrip=function($){let ct=w[$];return ct===void 0&&(ct=new oo,w[$]=ct),ct.getGripSpace()},this.getHand=function($){let ct=w[$];return ct===void 0&&(ct=new oo,w[$]=ct),ct.getHandSpace()};function V($){let ct=b.indexOf($.inputSource);if(ct===-1)return;let It=w[ct];It!==void 0&&(It.update($.inputSource,$.frame,c||o),It.dispatchEvent({type:$.type,data:$.inputSource}))}function Y(){s.removeEventListener("select",V),s.removeEventListener("selectstart",V),s.removeEventListener("selectend",V),s.removeEventListener("squeeze",V),s.removeEventListener("squeezestart",V),s.removeEventListener("squeezeend",V),s.removeEventListener("end",Y),s.removeEventListener("inputsourceschange",j);for(let $=0;$<w.length;$++){let ct=b[$];ct!==null&&(b[$]=null,w[$].disconnect(ct))}C=null,W=null,x.reset(),t.setRenderTarget(p),d=null,h=null,f=null,s=null,T=null,Gt.stop(),n.isPresenting=!1,t.setPixelRatio(L),t.setSize(D.width,D.height,!1),n.dispatchEvent({type:"sessionend"})}this.setFramebufferScaleFactor=function($){r=$,n.isPresenting===!0&&console.warn("THREE.WebXRManager: Cannot change framebuffer scale while presenting.")},this.setReferenceSpaceType=function($){a=$,n.isPresenting===!0&&console.warn("THREE.WebXRManager: Cannot change reference space type while presenting.")},this.getReferenceSpace=function(){return c||o},this.setReferenceSpace=function($){c=$},this.getBaseLayer=function(){return h!==null?h:d},this.getBinding=function(){return f},this.getFrame=function(){return _},this.getSession=function(){return s},this.setSession=async function($){if(s=$,s!==null){if(p=t.getRenderTarget(),s.addEventListener("select",V),s.addEventListener("selectstart",V),s.addEventListener("selectend",V),s.addEventListener("squeeze",V),s.addEventListener("squeezestart",V),s.addEventListener("squeezeend",V),s.addEventListener("end",Y),s.addEventListener("inputsourceschange",j),m.xrCompatible!==!0&&await e.makeXRCompatible(),L=t.getPixelRatio(),t.getSize(D),s.renderState.layers===void 0){let ct={antialias:m.antialias,alpha:!0,depth:m.depth,stencil:m.stencil,framebufferScaleFactor:r};d=new XRWebGLLayer(s,e,ct),s.updateRenderState({baseLayer:d}),t.setPixelRatio(1),t.setSize(d.framebufferWidth,d.framebufferHeight,!1),T=new Bi(d.framebufferWidth,d.framebufferHeight,{format:ri,type:Oi,colorSpace:t.outputColorSpace,stencilBuffer:m.stencil})}else{let ct=null,It=null,ut=null;m.depth&&(ut=m.stencil?e.DEPTH24_STENCIL8:e.DEPTH_COMPONENT24,ct=m.stencil?Er:xr,It=m.stencil?wr:As);let Dt={colorFormat:e.RGBA8,depthFormat:ut,scaleFactor:r};f=new XRWebGLBinding(s,e),h=f.createProjectionLayer(Dt),s.updateRenderState({layers:[h]}),t.setPixelRatio(1),t.setSize(h.textureWidth,h.textureHeight,!1),T=new Bi(h.textureWidth,h.textureHeight,{format:ri,type:Oi,depthTexture:new ba(h.textureWidth,h.textureHeight,It,void 0,void 0,void 0,void 0,void 0,void 0,ct),stencilBuffer:m.stencil,colorSpace:t.outputColorSpace,samples:m.antialias?4:0,resolveDepthBuffer:h.ignoreDepthValues===!1})}T.isXRRenderTarget=!0,this.setFoveation(l),c=null,o=await s.requestReferenceSpace(a),Gt.setContext(s),Gt.start(),n.isPresenting=!0,n.dispatchEvent({type:"sessionstart"})}},this.getEnvironmentBlendMode=function(){if(s!==null)return s.environmentBlendMode},this.getDepthTexture=function(){return x.getDepthTexture()};function j($){for(let ct=0;ct<$.removed.length;ct++){let It=$.removed[ct],ut=b.indexOf(It);ut>=0&&(b[ut]=null,w[ut].disconnect(It))}for(let ct=0;ct<$.added.length;ct++){let It=$.added[ct],ut=b.indexOf(It);if(ut===-1){for(let Ht=0;Ht<w.length;Ht++)if(Ht>=b.length){b.push(It),ut=Ht;break}else if(b[Ht]===null){b[Ht]=It,ut=Ht;break}if(ut===-1)break}let Dt=w[ut];Dt&&Dt.connect(It)}}let Z=new H,et=new H;function K($,ct,It){Z.setFromMatrixPosition(ct.matrixWorld),et.setFromMatrixPosition(It.matrixWorld);let ut=Z.distanceTo(et),Dt=ct.projectionMatrix.elements,Ht=It.projectionMatrix.elements,zt=Dt[14]/(Dt[10]-1),se=Dt[14]/(Dt[10]+1),jt=(Dt[9]+1)/Dt[5],Se=(Dt[9]-1)/Dt[5],z=(Dt[8]-1)/Dt[0],$e=(Ht[8]+1)/Ht[0],ee=zt*z,Zt=zt*$e,Nt=ut/(-z+$e),xe=Nt*-z;if(ct.matrixWorld.decompose($.position,$.quaternion,$.scale),$.translateX(xe),$.translateZ(Nt),$.matrixWorld.compose($.position,$.quaternion,$.scale),$.matrixWorldInverse.copy($.matrixWorld).invert(),Dt[10]===-1)$.projectionMatrix.copy(ct.projectionMatrix),$.projectionMatrixInverse.copy(ct.projectionMatrixInverse);else{let Ft=zt+Nt,A=se+Nt,v=ee-xe,B=Zt+(ut-xe),nt=jt*se/A*Ft,J=Se*se/A*Ft;$.projectionMatrix.makePerspective(v,B,nt,J,Ft,A),$.projectionMatrixInverse.copy($.projectionMatrix).invert()}}function ht($,ct){ct===null?$.matrixWorld.copy($.matrix):$.matrixWorld.multiplyMatrices(ct.matrixWorld,$.matrix),$.matrixWorldInverse.copy($.matrixWorld).invert()}this.updateCamera=function($){if(s===null)return;let ct=$.near,It=$.far;x.texture!==null&&(x.depthNear>0&&(ct=x.depthNear),x.depthFar>0&&(It=x.depthFar)),M.near=N.near=I.near=ct,M.far=N.far=I.far=It,(C!==M.near||W!==M.far)&&(s.updateRenderState({depthNear:M.near,depthFar:M.far}),C=M.near,W=M.far),I.layers.mask=$.layers.mask|2,N.layers.mask=$.layers.mask|4,M.layers.mask=I.layers.mask|N.layers.mask;let ut=$.parent,Dt=M.cameras;ht(M,ut);for(let Ht=0;Ht<Dt.length;Ht++)ht(Dt[Ht],ut);Dt.length===2?K(M,I,N):M.projectionMatrix.copy(I.projectionMatrix),ot($,M,ut)};function ot($,ct,It){It===null?$.matrix.copy(ct.matrixWorld):($.matrix.copy(It.matrixWorld),$.matrix.invert(),$.matrix.multiply(ct.matrixWorld)),$.matrix.decompose($.position,$.quaternion,$.scale),$.updateMatrixWorld(!0),$.projectionMatrix.copy(ct.projectionMatrix),$.projectionMatrixInverse.copy(ct.projectionMatrixInverse),$.isPerspectiveCamera&&($.fov=lo*2*Math.atan(1/$.projectionMatrix.elements[5]),$.zoom=1)}this.getCamera=function(){return M},this.getFoveation=function(){if(!(h===null&&d===null))return l},this.setFoveation=function($){l=$,h!==null&&(h.fixedFoveation=$),d!==null&&d.fixedFoveation!==void 0&&(d.fixedFoveation=$)},this.hasDepthSensing=function(){return x.texture!==null},this.getDepthSensingMesh=function(){return x.getMesh(M)};let mt=null;function dt($,ct){if(u=ct.getViewerPose(c||o),_=ct,u!==null){let It=u.views;d!==null&&(t.setRenderTargetFramebuffer(T,d.framebuffer),t.setRenderTarget(T));let ut=!1;It.length!==M.cameras.length&&(M.cameras.length=0,ut=!0);for(let Ht=0;Ht<It.length;Ht++){let zt=It[Ht],se=null;if(d!==null)se=d.getViewport(zt);else{let Se=f.getViewSubImage(h,zt);se=Se.viewport,Ht===0&&(t.setRenderTargetTextures(T,Se.colorTexture,h.ignoreDepthValues?void 0:Se.depthStencilTexture),t.setRenderTarget(T))}let jt=E[Ht];jt===void 0&&(jt=new Nn,jt.layers.enable(Ht),jt.viewport=new De,E[Ht]=jt),jt.matrix.fromArray(zt.transform.matrix),jt.matrix.decompose(jt.position,jt.quaternion,jt.scale),jt.projectionMatrix.fromArray(zt.projectionMatrix),jt.projectionMatrixInverse.copy(jt.projectionMatrix).invert(),jt.viewport.set(se.x,se.y,se.width,se.height),Ht===0&&(M.matrix.copy(jt.matrix),M.matrix.decompose(M.position,M.quaternion,M.scale)),ut===!0&&M.cameras.push(jt)}let Dt=s.enabledFeatures;if(Dt&&Dt.includes("depth-sensing")){let Ht=f.getDepthInformation(It[0]);Ht&&Ht.isValid&&Ht.texture&&x.init(t,Ht,s.renderState)}}for(let It=0;It<w.length;It++){let ut=b[It],Dt=w[It];ut!==null&&Dt!==void 0&&Dt.update(ut,ct,c||o)}mt&&mt($,ct),ct.detectedPlanes&&n.dispatchEvent({type:"planesdetected",data:ct}),_=null}let Gt=new fd;Gt.setAnimationLoop(dt),this.setAnimationLoop=function($){mt=$},this.dispose=function(){}}},ys=new ki,Ry=new Ve;function Py(i,t){function e(m,p){m.matrixAutoUpdate===!0&&m.updateMatrix(),p.value.copy(m.matrix)}function n(m,p){p.color.getRGB(m.fogColor.value,ud(i)),p.isFog?(m.fogNear.value=p.near,m.fogFar.value=p.far):p.isFogExp2&&(m.fogDensity.value=p.density)}function s(m,p,T,w,b){p.isMeshBasicMaterial||p.isMeshLambertMaterial?r(m,p):p.isMeshToonMaterial?(r(m,p),f(m,p)):p.isMeshPhongMaterial?(r(m,p),u(m,p)):p.isMeshStandardMaterial?(r(m,p),h(m,p),p.isMeshPhysicalMaterial&&d(m,p,b)):p.isMeshMatcapMaterial?(r(m,p),_(m,p)):p.isMeshDepthMaterial?r(m,p):p.isMeshDistanceMaterial?(r(m,p),x(m,p)):p.isMeshNormalMaterial?r(m,p):p.isLineBasicMaterial?(o(m,p),p.isLineDashedMaterial&&a(m,p)):p.isPointsMaterial?l(m,p,T,w):p.isSpriteMaterial?c(m,p):p.isShadowMaterial?(m.color.value.copy(p.color),m.opacity.value=p.opacity):p.isShaderMaterial&&(p.uniformsNeedUpdate=!1)}function r(m,p){m.opacity.value=p.opacity,p.color&&m.diffuse.value.copy(p.color),p.emissive&&m.emissive.value.copy(p.emissive).multiplyScalar(p.emissiveIntensity),p.map&&(m.map.value=p.map,e(p.map,m.mapTransform)),p.alphaMap&&(m.alphaMap.value=p.alphaMap,e(p.alphaMap,m.alphaMapTransform)),p.bumpMap&&(m.bumpMap.value=p.bumpMap,e(p.bumpMap,m.bumpMapTransform),m.bumpScale.value=p.bumpScale,p.side===Tn&&(m.bumpScale.value*=-1)),p.normalMap&&(m.normalMap.value=p.normalMap,e(p.normalMap,m.normalMapTransform),m.normalScale.value.copy(p.normalScale),p.side===Tn&&m.normalScale.value.negate()),p.displacementMap&&(m.displacementMap.value=p.displacementMap,e(p.displacementMap,m.displacementMapTransform),m.displacementScale.value=p.displacementScale,m.displacementBias.value=p.displacementBias),p.emissiveMap&&(m.emissiveMap.value=p.emissiveMap,e(p.emissiveMap,m.emissiveMapTransform)),p.specularMap&&(m.specularMap.value=p.specularMap,e(p.specularMap,m.specularMapTransform)),p.alphaTest>0&&(m.alphaTest.value=p.alphaTest);let T=t.get(p),w=T.envMap,b=T.envMapRotation;w&&(m.envMap.value=w,ys.copy(b),ys.x*=-1,ys.y*=-1,ys.z*=-1,w.isCubeTexture&&w.isRenderTargetTexture===!1&&(ys.y*=-1,ys.z*=-1),m.envMapRotation.value.setFromMatrix4(Ry.makeRotationFromEuler(ys)),m.flipEnvMap.value=w.isCubeTexture&&w.isRenderTargetTexture===!1?-1:1,m.reflectivity.value=p.reflectivity,m.ior.value=p.ior,m.refractionRatio.value=p.refractionRatio),p.lightMap&&(m.lightMap.value=p.lightMap,m.lightMapIntensity.value=p.lightMapIntensity,e(p.lightMap,m.lightMapTransform)),p.aoMap&&(m.aoMap.value=p.aoMap,m.aoMapIntensity.value=p.aoMapIntensity,e(p.aoMap,m.aoMapTransform))}function o(m,p){m.diffuse.value.copy(p.color),m.opacity.value=p.opacity,p.map&&(m.map.value=p.map,e(p.map,m.mapTransform))}function a(m,p){m.dashSize.value=p.dashSize,m.totalSize.value=p.dashSize+p.gapSize,m.scale.value=p.scale}function l(m,p,T,w){m.diffuse.value.copy(p.color),m.opacity.value=p.opacity,m.size.value=p.size*T,m.scale.value=w*.5,p.map&&(m.map.value=p.map,e(p.map,m.uvTransform)),p.alphaMap&&(m.alphaMap.value=p.alphaMap,e(p.alphaMap,m.alphaMapTransform)),p.alphaTest>0&&(m.alphaTest.value=p.alphaTest)}function c(m,p){m.diffuse.value.copy(p.color),m.opacity.value=p.opacity,m.rotation.value=p.rotation,p.map&&(m.map.value=p.map,e(p.map,m.mapTransform)),p.alphaMap&&(m.alphaMap.value=p.alphaMap,e(p.alphaMap,m.alphaMapTransform)),p.alphaTest>0&&(m.alphaTest.value=p.alphaTest)}function u(m,p){m.specular.value.copy(p.specular),m.shininess.value=Math.max(p.shininess,1e-4)}function f(m,p){p.gradientMap&&(m.gradientMap.value=p.gradientMap)}function h(m,p){m.metalness.value=p.metalness,p.metalnessMap&&(m.metalnessMap.value=p.metalnessMap,e(p.metalnessMap,m.metalnessMapTransform)),m.roughness.value=p.roughness,p.roughnessMap&&(m.roughnessMap.value=p.roughnessMap,e(p.roughnessMap,m.roughnessMapTransform)),p.envMap&&(m.envMapIntensity.value=p.envMapIntensity)}function d(m,p,T){m.ior.value=p.ior,p.sheen>0&&(m.sheenColor.value.copy(p.sheenColor).multiplyScalar(p.sheen),m.sheenRoughness.value=p.sheenRoughness,p.sheenColorMap&&(m.sheenColorMap.value=p.sheenColorMap,e(p.sheenColorMap,m.sheenColorMapTransform)),p.sheenRoughnessMap&&(m.sheenRoughnessMap.value=p.sheenRoughnessMap,e(p.sheenRoughnessMap,m.sheenRoughnessMapTransform))),p.clearcoat>0&&(m.clearcoat.value=p.clearcoat,m.clearcoatRoughness.value=p.clearcoatRoughness,p.clearcoatMap&&(m.clearcoatMap.value=p.clearcoatMap,e(p.clearcoatMap,m.clearcoatMapTransform)),p.clearcoatRoughnessMap&&(m.clearcoatRoughnessMap.value=p.clearcoatRoughnessMap,e(p.clearcoatRoughnessMap,m.clearcoatRoughnessMapTransform)),p.clearcoatNormalMap&&(m.clearcoatNormalMap.value=p.clearcoatNormalMap,e(p.clearcoatNormalMap,m.clearcoatNormalMapTransform),m.clearcoatNormalScale.value.copy(p.clearcoatNormalScale),p.side===Tn&&m.clearcoatNormalScale.value.negate())),p.dispersion>0&&(m.dispersion.value=p.dispersion),p.iridescence>0&&(m.iridescence.value=p.iridescence,m.iridescenceIOR.value=p.iridescenceIOR,m.iridescenceThicknessMinimum.value=p.iridescenceThicknessRange[0],m.iridescenceThicknessMaximum.value=p.iridescenceThicknessRange[1],p.iridescenceMap&&(m.iridescenceMap.value=p.iridescenceMap,e(p.iridescenceMap,m.iridescenceMapTransform)),p.iridescenceThicknessMap&&(m.iridescenceThicknessMap.value=p.iridescenceThicknessMap,e(p.iridescenceThicknessMap,m.iridescenceThicknessMapTransform))),p.transmission>0&&(m.transmission.value=p.transmission,m.transmissionSamplerMap.value=T.texture,m.transmissionSamplerSize.value.set(T.width,T.height),p.transmissionMap&&(m.transmissionMap.value=p.transmissionMap,e(p.transmissionMap,m.transmissionMapTransform)),m.thickness.value=p.thickness,p.thicknessMap&&(m.thicknessMap.value=p.thicknessMap,e(p.thicknessMap,m.thicknessMapTransform)),m.attenuationDistance.value=p.attenuationDistance,m.attenuationColor.value.copy(p.attenuationColor)),p.anisotropy>0&&(m.anisotropyVector.value.set(p.anisotropy*Math.cos(p.anisotropyRotation),p.anisotropy*Math.sin(p.anisotropyRotation)),p.anisotropyMap&&(m.anisotropyMap.value=p.anisotropyMap,e(p.anisotropyMap,m.anisotropyMapTransform))),m.specularIntensity.value=p.specularIntensity,m.specularColor.value.copy(p.specularColor),p.specularColorMap&&(m.specularColorMap.value=p.specularColorMap,e(p.specularColorMap,m.specularColorMapTransform)),p.specularIntensityMap&&(m.specularIntensityMap.value=p.specularIntensityMap,e(p.specularIntensityMap,m.specularIntensityMapTransform))}function _(m,p){p.matcap&&(m.matcap.value=p.matcap)}function x(m,p){let T=t.get(p).light;m.referencePosition.value.setFromMatrixPosition(T.matrixWorld),m.nearDistance.value=T.shadow.camera.near,m.farDistance.value=T.shadow.camera.far}return{refreshFogUniforms:n,refreshMaterialUniforms:s}}function Iy(i,t,e,n){let s={},r={},o=[],a=i.getParameter(i.MAX_UNIFORM_BUFFER_BINDINGS);function l(T,w){let b=w.program;n.uniformBlockBinding(T,b)}function c(T,w){let b=s[T.id];b===void 0&&(_(T),b=u(T),s[T.id]=b,T.addEventListener("dispose",m));let D=w.program;n.updateUBOMapping(T,D);let L=t.render.frame;r[T.id]!==L&&(h(T),r[T.id]=L)}function u(T){let w=f();T.__bindingPointIndex=w;let b=i.createBuffer(),D=T.__size,L=T.usage;return i.bindBuffer(i.UNIFORM_BUFFER,b),i.bufferData(i.UNIFORM_BUFFER,D,L),i.bindBuffer(i.UNIFORM_BUFFER,null),i.bindBufferBase(i.UNIFORM_BUFFER,w,b),b}function f(){for(let T=0;T<a;T++)if(o.indexOf(T)===-1)return o.push(T),T;return console.error("THREE.WebGLRenderer: Maximum number of simultaneously usable uniforms groups reached."),0}function h(T){let w=s[T.id],b=T.uniforms,D=T.__cache;i.bindBuffer(i.UNIFORM_BUFFER,w);for(let L=0,I=b.length;L<I;L++){let N=Array.isArray(b[L])?b[L]:[b[L]];for(let E=0,M=N.length;E<M;E++){let C=N[E];if(d(C,L,E,D)===!0){let W=C.__offset,V=Array.isArray(C.value)?C.value:[C.value],Y=0;for(let j=0;j<V.length;j++){let Z=V[j],et=x(Z);typeof Z=="number"||typeof Z=="boolean"?(C.__data[0]=Z,i.bufferSubData(i.UNIFORM_BUFFER,W+Y,C.__data)):Z.isMatrix3?(C.__data[0]=Z.elements[0],C.__data[1]=Z.elements[1],C.__data[2]=Z.elements[2],C.__data[3]=0,C.__data[4]=Z.elements[3],C.__data[5]=Z.elements[4],C.__data[6]=Z.elements[5],C.__data[7]=0,C.__data[8]=Z.elements[6],C.__data[9]=Z.elements[7],C.__data[10]=Z.elements[8],C.__data[11]=0):(Z.toArray(C.__data,Y),Y+=et.storage/Float32Array.BYTES_PER_ELEMENT)}i.bufferSubData(i.UNIFORM_BUFFER,W,C.__data)}}}i.bindBuffer(i.UNIFORM_BUFFER,null)}function d(T,w,b,D){let L=T.value,I=w+"_"+b;if(D[I]===void 0)return typeof L=="number"||typeof L=="boolean"?D[I]=L:D[I]=L.clone(),!0;{let N=D[I];if(typeof L=="number"||typeof L=="boolean"){if(N!==L)return D[I]=L,!0}else if(N.equals(L)===!1)return N.copy(L),!0}return!1}function _(T){let w=T.uniforms,b=0,D=16;for(let I=0,N=w.length;I<N;I++){let E=Array.isArray(w[I])?w[I]:[w[I]];for(let M=0,C=E.length;M<C;M++){let W=E[M],V=Array.isArray(W.value)?W.value:[W.value];for(let Y=0,j=V.length;Y<j;Y++){let Z=V[Y],et=x(Z),K=b%D,ht=K%et.boundary,ot=K+ht;b+=ht,ot!==0&&D-ot<et.storage&&(b+=D-ot),W.__data=new Float32Array(et.storage/Float32Array.BYTES_PER_ELEMENT),W.__offset=b,b+=et.storage}}}let L=b%D;return L>0&&(b+=D-L),T.__size=b,T.__cache={},this}function x(T){let w={boundary:0,storage:0};return typeof T=="number"||typeof T=="boolean"?(w.boundary=4,w.storage=4):T.isVector2?(w.boundary=8,w.storage=8):T.isVector3||T.isColor?(w.boundary=16,w.storage=12):T.isVector4?(w.boundary=16,w.storage=16):T.isMatrix3?(w.boundary=48,w.storage=48):T.isMatrix4?(w.boundary=64,w.storage=64):T.isTexture?console.warn("THREE.WebGLRenderer: Texture samplers can not be part of an uniforms group."):console.warn("THREE.WebGLRenderer: Unsupported uniform value type.",T),w}function m(T){let w=T.target;w.removeEventListener("dispose",m);let b=o.indexOf(w.__bindingPointIndex);o.splice(b,1),i.deleteBuffer(s[w.id]),delete s[w.id],delete r[w.id]}function p(){for(let T in s)i.deleteBuffer(s[T]);o=[],s={},r={}}return{bind:l,update:c,dispose:p}}var wa=class{constructor(t={}){let{canvas:e=Ug(),context:n=null,depth:s=!0,stencil:r=!1,alpha:o=!1,antialias:a=!1,premultipliedAlpha:l=!0,preserveDrawingBuffer:c=!1,powerPreference:u="default",failIfMajorPerformanceCaveat:f=!1,reverseDepthBuffer:h=!1}=t;this.isWebGLRenderer=!0;let d;if(n!==null){if(typeof WebGLRenderingContext<"u"&&n instanceof WebGLRenderingContext)throw new Error("THREE.WebGLRenderer: WebGL 1 is not supported since r163.");d=n.getContextAttributes().alpha}else d=o;let _=new Uint32Array(4),x=new Int32Array(4),m=null,p=null,T=[],w=[];this.domElement=e,this.debug={checkShaderErrors:!0,onShaderError:null},this.autoClear=!0,this.autoClearColor=!0,this.autoClearDepth=!0,this.autoClearStencil=!0,this.sortObjects=!0,this.clippingPlanes=[],this.localClippingEnabled=!1,this._outputColorSpace=Yn,this.toneMapping=ns,this.toneMappingExposure=1;let b=this,D=!1,L=0,I=0,N=null,E=-1,M=null,C=new De,W=new De,V=null,Y=new pe(0),j=0,Z=e.width,et=e.height,K=1,ht=null,ot=null,mt=new De(0,0,Z,et),dt=new De(0,0,Z,et),Gt=!1,$=new ya,ct=!1,It=!1,ut=new Ve,Dt=new Ve,Ht=new H,zt=new De,se={background:null,fog:null,environment:null,overrideMaterial:null,isScene:!0},jt=!1;function Se(){return N===null?K:1}let z=n;function $e(S,O){return e.getContext(S,O)}try{let S={alpha:!0,depth:s,stencil:r,antialias:a,premultipliedAlpha:l,preserveDrawingBuffer:c,powerPreference:u,failIfMajorPerformanceCaveat:f};if("setAttribute"in e&&e.setAttribute("data-engine",`three.js r${gh}`),e.addEventListener("webglcontextlost",st,!1),e.addEventListener("webglcontextrestored",wt,!1),e.addEventListener("webglcontextcreationerror",bt,!1),z===null){let O="webgl2";if(z=$e(O,S),z===null)throw $e(O)?new Error("Error creating WebGL context with your selected attributes."):new Error("Error creating WebGL context.")}}catch(S){throw console.error("THREE.WebGLRenderer: "+S.message),S}let ee,Zt,Nt,xe,Ft,A,v,B,nt,J,tt,Pt,gt,yt,Xt,at,_t,Bt,Vt,St,Qt,Yt,ge,U;function xt(){ee=new qx(z),ee.init(),Yt=new Ey(z,ee),Zt=new Vx(z,ee,t,Yt),Nt=new Sy(z,ee),Zt.reverseDepthBuffer&&h&&Nt.buffers.depth.setReversed(!0),xe=new Jx(z),Ft=new cy,A=new wy(z,ee,Nt,Ft,Zt,Yt,xe),v=new Gx(b),B=new Yx(b),nt=new i0(z),ge=new kx(z,nt),J=new $x(z,nt,xe,ge),tt=new jx(z,J,nt,xe),Vt=new Kx(z,Zt,A),at=new Hx(Ft),Pt=new ly(b,v,B,ee,Zt,ge,at),gt=new Py(b,Ft),yt=new uy,Xt=new _y(ee),Bt=new Bx(b,v,B,Nt,tt,d,l),_t=new yy(b,tt,Zt),U=new Iy(z,xe,Zt,Nt),St=new zx(z,ee,xe),Qt=new Zx(z,ee,xe),xe.programs=Pt.programs,b.capabilities=Zt,b.extensions=ee,b.properties=Ft,b.renderLists=yt,b.shadowMap=_t,b.state=Nt,b.info=xe}xt();let Q=new eh(b,z);this.xr=Q,this.getContext=function(){return z},this.getContextAttributes=function(){return z.getContextAttributes()},this.forceContextLoss=function(){let S=ee.get("WEBGL_lose_context");S&&S.loseContext()},this.forceContextRestore=function(){let S=ee.get("WEBGL_lose_context");S&&S.restoreContext()},this.getPixelRatio=function(){return K},this.setPixelRatio=function(S){S!==void 0&&(K=S,this.setSize(Z,et,!1))},this.getSize=function(S){return S.set(Z,et)},this.setSize=function(S,O,G=!0){if(Q.isPresenting){console.warn("THREE.WebGLRenderer: Can't change size while VR device is presenting.");return}Z=S,et=O,e.width=Math.floor(S*K),e.height=Math.floor(O*K),G===!0&&(e.style.width=S+"px",e.style.height=O+"px"),this.setViewport(0,0,S,O)},this.getDrawingBufferSize=function(S){return S.set(Z*K,et*K).floor()},this.setDrawingBufferSize=function(S,O,G){Z=S,et=O,K=G,e.width=Math.floor(S*G),e.height=Math.floor(O*G),this.setViewport(0,0,S,O)},this.getCurrentViewport=function(S){return S.copy(C)},this.getViewport=function(S){return S.copy(mt)},this.setViewport=function(S,O,G,q){S.isVector4?mt.set(S.x,S.y,S.z,S.w):mt.set(S,O,G,q),Nt.viewport(C.copy(mt).multiplyScalar(K).round())},this.getScissor=function(S){return S.copy(dt)},this.setScissor=function(S,O,G,q){S.isVector4?dt.set(S.x,S.y,S.z,S.w):dt.set(S,O,G,q),Nt.scissor(W.copy(dt).multiplyScalar(K).round())},this.getScissorTest=function(){return Gt},this.setScissorTest=function(S){Nt.setScissorTest(Gt=S)},this.setOpaqueSort=function(S){ht=S},this.setTransparentSort=function(S){ot=S},this.getClearColor=function(S){return S.copy(Bt.getClearColor())},this.setClearColor=function(){Bt.setClearColor.apply(Bt,arguments)},this.getClearAlpha=function(){return Bt.getClearAlpha()},this.setClearAlpha=function(){Bt.setClearAlpha.apply(Bt,arguments)},this.clear=function(S=!0,O=!0,G=!0){let q=0;if(S){let k=!1;if(N!==null){let ft=N.texture.format;k=ft===Sh||ft===Mh||ft===yh}if(k){let ft=N.texture.type,Mt=ft===Oi||ft===As||ft===ao||ft===wr||ft===xh||ft===vh,Ut=Bt.getClearColor(),Lt=Bt.getClearAlpha(),Wt=Ut.r,qt=Ut.g,Ot=Ut.b;Mt?(_[0]=Wt,_[1]=qt,_[2]=Ot,_[3]=Lt,z.clearBufferuiv(z.COLOR,0,_)):(x[0]=Wt,x[1]=qt,x[2]=Ot,x[3]=Lt,z.clearBufferiv(z.COLOR,0,x))}else q|=z.COLOR_BUFFER_BIT}O&&(q|=z.DEPTH_BUFFER_BIT),G&&(q|=z.STENCIL_BUFFER_BIT,this.state.buffers.stencil.setMask(4294967295)),z.clear(q)},this.clearColor=function(){this.clear(!0,!1,!1)},this.clearDepth=function(){this.clear(!1,!0,!1)},this.clearStencil=function(){this.clear(!1,!1,!0)},this.dispose=function(){e.removeEventListener("webglcontextlost",st,!1),e.removeEventListener("webglcontextrestored",wt,!1),e.removeEventListener("webglcontextcreationerror",bt,!1),yt.dispose(),Xt.dispose(),Ft.dispose(),v.dispose(),B.dispose(),tt.dispose(),ge.dispose(),U.dispose(),Pt.dispose(),Q.dispose(),Q.removeEventListener("sessionstart",yi),Q.removeEventListener("sessionend",Mi),He.stop()};function st(S){S.preventDefault(),console.log("THREE.WebGLRenderer: Context Lost."),D=!0}function wt(){console.log("THREE.WebGLRenderer: Context Restored."),D=!1;let S=xe.autoReset,O=_t.enabled,G=_t.autoUpdate,q=_t.needsUpdate,k=_t.type;xt(),xe.autoReset=S,_t.enabled=O,_t.autoUpdate=G,_t.needsUpdate=q,_t.type=k}function bt(S){console.error("THREE.WebGLRenderer: A WebGL context could not be created. Reason: ",S.statusMessage)}function Jt(S){let O=S.target;O.removeEventListener("dispose",Jt),Ue(O)}function Ue(S){At(S),Ft.remove(S)}function At(S){let O=Ft.get(S).programs;O!==void 0&&(O.forEach(function(G){Pt.releaseProgram(G)}),S.isShaderMaterial&&Pt.releaseShaderCache(S))}this.renderBufferDirect=function(S,O,G,q,k,ft){O===null&&(O=se);let Mt=k.isMesh&&k.matrixWorld.determinant()<0,Ut=hs(S,O,G,q,k);Nt.setMaterial(q,Mt);let Lt=G.index,Wt=1;if(q.wireframe===!0){if(Lt=J.getWireframeAttribute(G),Lt===void 0)return;Wt=2}let qt=G.drawRange,Ot=G.attributes.position,ae=qt.start*Wt,ve=(qt.start+qt.count)*Wt;ft!==null&&(ae=Math.max(ae,ft.start*Wt),ve=Math.min(ve,(ft.start+ft.count)*Wt)),Lt!==null?(ae=Math.max(ae,0),ve=Math.min(ve,Lt.count)):Ot!=null&&(ae=Math.max(ae,0),ve=Math.min(ve,Ot.count));let Me=ve-ae;if(Me<0||Me===1/0)return;ge.setup(k,q,Ut,G,Lt);let nn,ue=St;if(Lt!==null&&(nn=nt.get(Lt),ue=Qt,ue.setIndex(nn)),k.isMesh)q.wireframe===!0?(Nt.setLineWidth(q.wireframeLinewidth*Se()),ue.setMode(z.LINES)):ue.setMode(z.TRIANGLES);else if(k.isLine){let Ct=q.linewidth;Ct===void 0&&(Ct=1),Nt.setLineWidth(Ct*Se()),k.isLineSegments?ue.setMode(z.LINES):k.isLineLoop?ue.setMode(z.LINE_LOOP):ue.setMode(z.LINE_STRIP)}else k.isPoints?ue.setMode(z.POINTS):k.isSprite&&ue.setMode(z.TRIANGLES);if(k.isBatchedMesh)if(k._multiDrawInstances!==null)ue.renderMultiDrawInstances(k._multiDrawStarts,k._multiDrawCounts,k._multiDrawCount,k._multiDrawInstances);else if(ee.get("WEBGL_multi_draw"))ue.renderMultiDraw(k._multiDrawStarts,k._multiDrawCounts,k._multiDrawCount);else{let Ct=k._multiDrawStarts,Vn=k._multiDrawCounts,fe=k._multiDrawCount,mn=Lt?nt.get(Lt).bytesPerElement:1,bi=Ft.get(q).currentProgram.getUniforms();for(let gn=0;gn<fe;gn++)bi.setValue(z,"_gl_DrawID",gn),ue.render(Ct[gn]/mn,Vn[gn])}else if(k.isInstancedMesh)ue.renderInstances(ae,Me,k.count);else if(G.isInstancedBufferGeometry){let Ct=G._maxInstanceCount!==void 0?G._maxInstanceCount:1/0,Vn=Math.min(G.instanceCount,Ct);ue.renderInstances(ae,Me,Vn)}else ue.render(ae,Me)};function re(S,O,G){S.transparent===!0&&S.side===si&&S.forceSinglePass===!1?(S.side=Tn,S.needsUpdate=!0,Hs(S,O,G),S.side=is,S.needsUpdate=!0,Hs(S,O,G),S.side=si):Hs(S,O,G)}this.compile=function(S,O,G=null){G===null&&(G=S),p=Xt.get(G),p.init(O),w.push(p),G.traverseVisible(function(k){k.isLight&&k.layers.test(O.layers)&&(p.pushLight(k),k.castShadow&&p.pushShadow(k))}),S!==G&&S.traverseVisible(function(k){k.isLight&&k.layers.test(O.layers)&&(p.pushLight(k),k.castShadow&&p.pushShadow(k))}),p.setupLights();let q=new Set;return S.traverse(function(k){if(!(k.isMesh||k.isPoints||k.isLine||k.isSprite))return;let ft=k.material;if(ft)if(Array.isArray(ft))for(let Mt=0;Mt<ft.length;Mt++){let Ut=ft[Mt];re(Ut,G,k),q.add(Ut)}else re(ft,G,k),q.add(ft)}),w.pop(),p=null,q},this.compileAsync=function(S,O,G=null){let q=this.compile(S,O,G);return new Promise(k=>{function ft(){if(q.forEach(function(Mt){Ft.get(Mt).currentProgram.isReady()&&q.delete(Mt)}),q.size===0){k(S);return}setTimeout(ft,10)}ee.get("KHR_parallel_shader_compile")!==null?ft():setTimeout(ft,10)})};let be=null;function en(S){be&&be(S)}function yi(){He.stop()}function Mi(){He.start()}let He=new fd;He.setAnimationLoop(en),typeof self<"u"&&He.setContext(self),this.setAnimationLoop=function(S){be=S,Q.setAnimationLoop(S),S===null?He.stop():He.start()},Q.addEventListener("sessionstart",yi),Q.addEventListener("sessionend",Mi),this.render=function(S,O){if(O!==void 0&&O.isCamera!==!0){console.error("THREE.WebGLRenderer.render: camera is not an instance of THREE.Camera.");return}if(D===!0)return;if(S.matrixWorldAutoUpdate===!0&&S.updateMatrixWorld(),O.parent===null&&O.matrixWorldAutoUpdate===!0&&O.updateMatrixWorld(),Q.enabled===!0&&Q.isPresenting===!0&&(Q.cameraAutoUpdate===!0&&Q.updateCamera(O),O=Q.getCamera()),S.isScene===!0&&S.onBeforeRender(b,S,O,N),p=Xt.get(S,w.length),p.init(O),w.push(p),Dt.multiplyMatrices(O.projectionMatrix,O.matrixWorldInverse),$.setFromProjectionMatrix(Dt),It=this.localClippingEnabled,ct=at.init(this.clippingPlanes,It),m=yt.get(S,T.length),m.init(),T.push(m),Q.enabled===!0&&Q.isPresenting===!0){let ft=b.xr.getDepthSensingMesh();ft!==null&&ui(ft,O,-1/0,b.sortObjects)}ui(S,O,0,b.sortObjects),m.finish(),b.sortObjects===!0&&m.sort(ht,ot),jt=Q.enabled===!1||Q.isPresenting===!1||Q.hasDepthSensing()===!1,jt&&Bt.addToRenderList(m,S),this.info.render.frame++,ct===!0&&at.beginShadows();let G=p.state.shadowsArray;_t.render(G,S,O),ct===!0&&at.endShadows(),this.info.autoReset===!0&&this.info.reset();let q=m.opaque,k=m.transmissive;if(p.setupLights(),O.isArrayCamera){let ft=O.cameras;if(k.length>0)for(let Mt=0,Ut=ft.length;Mt<Ut;Mt++){let Lt=ft[Mt];Hr(q,k,S,Lt)}jt&&Bt.render(S);for(let Mt=0,Ut=ft.length;Mt<Ut;Mt++){let Lt=ft[Mt];Si(m,S,Lt,Lt.viewport)}}else k.length>0&&Hr(q,k,S,O),jt&&Bt.render(S),Si(m,S,O);N!==null&&(A.updateMultisampleRenderTarget(N),A.updateRenderTargetMipmap(N)),S.isScene===!0&&S.onAfterRender(b,S,O),ge.resetDefaultState(),E=-1,M=null,w.pop(),w.length>0?(p=w[w.length-1],ct===!0&&at.setGlobalState(b.clippingPlanes,p.state.camera)):p=null,T.pop(),T.length>0?m=T[T.length-1]:m=null};function ui(S,O,G,q){if(S.visible===!1)return;if(S.layers.test(O.layers)){if(S.isGroup)G=S.renderOrder;else if(S.isLOD)S.autoUpdate===!0&&S.update(O);else if(S.isLight)p.pushLight(S),S.castShadow&&p.pushShadow(S);else if(S.isSprite){if(!S.frustumCulled||$.intersectsSprite(S)){q&&zt.setFromMatrixPosition(S.matrixWorld).applyMatrix4(Dt);let Mt=tt.update(S),Ut=S.material;Ut.visible&&m.push(S,Mt,Ut,G,zt.z,null)}}else if((S.isMesh||S.isLine||S.isPoints)&&(!S.frustumCulled||$.intersectsObject(S))){let Mt=tt.update(S),Ut=S.material;if(q&&(S.boundingSphere!==void 0?(S.boundingSphere===null&&S.computeBoundingSphere(),zt.copy(S.boundingSphere.center)):(Mt.boundingSphere===null&&Mt.computeBoundingSphere(),zt.copy(Mt.boundingSphere.center)),zt.applyMatrix4(S.matrixWorld).applyMatrix4(Dt)),Array.isArray(Ut)){let Lt=Mt.groups;for(let Wt=0,qt=Lt.length;Wt<qt;Wt++){let Ot=Lt[Wt],ae=Ut[Ot.materialIndex];ae&&ae.visible&&m.push(S,Mt,ae,G,zt.z,Ot)}}else Ut.visible&&m.push(S,Mt,Ut,G,zt.z,null)}}let ft=S.children;for(let Mt=0,Ut=ft.length;Mt<Ut;Mt++)ui(ft[Mt],O,G,q)}function Si(S,O,G,q){let k=S.opaque,ft=S.transmissive,Mt=S.transparent;p.setupLightsView(G),ct===!0&&at.setGlobalState(b.clippingPlanes,G),q&&Nt.viewport(C.copy(q)),k.length>0&&cs(k,O,G),ft.length>0&&cs(ft,O,G),Mt.length>0&&cs(Mt,O,G),Nt.buffers.depth.setTest(!0),Nt.buffers.depth.setMask(!0),Nt.buffers.color.setMask(!0),Nt.setPolygonOffset(!1)}function Hr(S,O,G,q){if((G.isScene===!0?G.overrideMaterial:null)!==null)return;p.state.transmissionRenderTarget[q.id]===void 0&&(p.state.transmissionRenderTarget[q.id]=new Bi(1,1,{generateMipmaps:!0,type:ee.has("EXT_color_buffer_half_float")||ee.has("EXT_color_buffer_float")?po:Oi,minFilter:Ts,samples:4,stencilBuffer:r,resolveDepthBuffer:!1,resolveStencilBuffer:!1,colorSpace:de.workingColorSpace}));let ft=p.state.transmissionRenderTarget[q.id],Mt=q.viewport||C;ft.setSize(Mt.z,Mt.w);let Ut=b.getRenderTarget();b.setRenderTarget(ft),b.getClearColor(Y),j=b.getClearAlpha(),j<1&&b.setClearColor(16777215,.5),b.clear(),jt&&Bt.render(G);let Lt=b.toneMapping;b.toneMapping=ns;let Wt=q.viewport;if(q.viewport!==void 0&&(q.viewport=void 0),p.setupLightsView(q),ct===!0&&at.setGlobalState(b.clippingPlanes,q),cs(S,G,q),A.updateMultisampleRenderTarget(ft),A.updateRenderTargetMipmap(ft),ee.has("WEBGL_multisampled_render_to_texture")===!1){let qt=!1;for(let Ot=0,ae=O.length;Ot<ae;Ot++){let ve=O[Ot],Me=ve.object,nn=ve.geometry,ue=ve.material,Ct=ve.group;if(ue.side===si&&Me.layers.test(q.layers)){let Vn=ue.side;ue.side=Tn,ue.needsUpdate=!0,bo(Me,G,q,nn,ue,Ct),ue.side=Vn,ue.needsUpdate=!0,qt=!0}}qt===!0&&(A.updateMultisampleRenderTarget(ft),A.updateRenderTargetMipmap(ft))}b.setRenderTarget(Ut),b.setClearColor(Y,j),Wt!==void 0&&(q.viewport=Wt),b.toneMapping=Lt}function cs(S,O,G){let q=O.isScene===!0?O.overrideMaterial:null;for(let k=0,ft=S.length;k<ft;k++){let Mt=S[k],Ut=Mt.object,Lt=Mt.geometry,Wt=q===null?Mt.material:q,qt=Mt.group;Ut.layers.test(G.layers)&&bo(Ut,O,G,Lt,Wt,qt)}}function bo(S,O,G,q,k,ft){S.onBeforeRender(b,O,G,q,k,ft),S.modelViewMatrix.multiplyMatrices(G.matrixWorldInverse,S.matrixWorld),S.normalMatrix.getNormalMatrix(S.modelViewMatrix),k.onBeforeRender(b,O,G,q,S,ft),k.transparent===!0&&k.side===si&&k.forceSinglePass===!1?(k.side=Tn,k.needsUpdate=!0,b.renderBufferDirect(G,O,q,k,S,ft),k.side=is,k.needsUpdate=!0,b.renderBufferDirect(G,O,q,k,S,ft),k.side=si):b.renderBufferDirect(G,O,q,k,S,ft),S.onAfterRender(b,O,G,q,k,ft)}function Hs(S,O,G){O.isScene!==!0&&(O=se);let q=Ft.get(S),k=p.state.lights,ft=p.state.shadowsArray,Mt=k.state.version,Ut=Pt.getParameters(S,k.state,ft,O,G),Lt=Pt.getProgramCacheKey(Ut),Wt=q.programs;q.environment=S.isMeshStandardMaterial?O.environment:null,q.fog=O.fog,q.envMap=(S.isMeshStandardMaterial?B:v).get(S.envMap||q.environment),q.envMapRotation=q.environment!==null&&S.envMap===null?O.environmentRotation:S.envMapRotation,Wt===void 0&&(S.addEventListener("dispose",Jt),Wt=new Map,q.programs=Wt);let qt=Wt.get(Lt);if(qt!==void 0){if(q.currentProgram===qt&&q.lightsStateVersion===Mt)return wo(S,Ut),qt}else Ut.uniforms=Pt.getUniforms(S),S.onBeforeCompile(Ut,b),qt=Pt.acquireProgram(Ut,Lt),Wt.set(Lt,qt),q.uniforms=Ut.uniforms;let Ot=q.uniforms;return(!S.isShaderMaterial&&!S.isRawShaderMaterial||S.clipping===!0)&&(Ot.clippingPlanes=at.uniform),wo(S,Ut),q.needsLights=di(S),q.lightsStateVersion=Mt,q.needsLights&&(Ot.ambientLightColor.value=k.state.ambient,Ot.lightProbe.value=k.state.probe,Ot.directionalLights.value=k.state.directional,Ot.directionalLightShadows.value=k.state.directionalShadow,Ot.spotLights.value=k.state.spot,Ot.spotLightShadows.value=k.state.spotShadow,Ot.rectAreaLights.value=k.state.rectArea,Ot.ltc_1.value=k.state.rectAreaLTC1,Ot.ltc_2.value=k.state.rectAreaLTC2,Ot.pointLights.value=k.state.point,Ot.pointLightShadows.value=k.state.pointShadow,Ot.hemisphereLights.value=k.state.hemi,Ot.directionalShadowMap.value=k.state.directionalShadowMap,Ot.directionalShadowMatrix.value=k.state.directionalShadowMatrix,Ot.spotShadowMap.value=k.state.spotShadowMap,Ot.spotLightMatrix.value=k.state.spotLightMatrix,Ot.spotLightMap.value=k.state.spotLightMap,Ot.pointShadowMap.value=k.state.pointShadowMap,Ot.pointShadowMatrix.value=k.state.pointShadowMatrix),q.currentProgram=qt,q.uniformsList=null,qt}function fi(S){if(S.uniformsList===null){let O=S.currentProgram.getUniforms();S.uniformsList=yr.seqWithValue(O.seq,S.uniforms)}return S.uniformsList}function wo(S,O){let G=Ft.get(S);G.outputColorSpace=O.outputColorSpace,G.batching=O.batching,G.batchingColor=O.batchingColor,G.instancing=O.instancing,G.instancingColor=O.instancingColor,G.instancingMorph=O.instancingMorph,G.skinning=O.skinning,G.morphTargets=O.morphTargets,G.morphNormals=O.morphNormals,G.morphColors=O.morphColors,G.morphTargetsCount=O.morphTargetsCount,G.numClippingPlanes=O.numClippingPlanes,G.numIntersection=O.numClipIntersection,G.vertexAlphas=O.vertexAlphas,G.vertexTangents=O.vertexTangents,G.toneMapping=O.toneMapping}function hs(S,O,G,q,k){O.isScene!==!0&&(O=se),A.resetTextureUnits();let ft=O.fog,Mt=q.isMeshStandardMaterial?O.environment:null,Ut=N===null?b.outputColorSpace:N.isXRRenderTarget===!0?N.texture.colorSpace:rs,Lt=(q.isMeshStandardMaterial?B:v).get(q.envMap||Mt),Wt=q.vertexColors===!0&&!!G.attributes.color&&G.attributes.color.itemSize===4,qt=!!G.attributes.tangent&&(!!q.normalMap||q.anisotropy>0),Ot=!!G.morphAttributes.position,ae=!!G.morphAttributes.normal,ve=!!G.morphAttributes.color,Me=ns;q.toneMapped&&(N===null||N.isXRRenderTarget===!0)&&(Me=b.toneMapping);let nn=G.morphAttributes.position||G.morphAttributes.normal||G.morphAttributes.color,ue=nn!==void 0?nn.length:0,Ct=Ft.get(q),Vn=p.state.lights;if(ct===!0&&(It===!0||S!==M)){let Sn=S===M&&q.id===E;at.setState(q,S,Sn)}let fe=!1;q.version===Ct.__version?(Ct.needsLights&&Ct.lightsStateVersion!==Vn.state.version||Ct.outputColorSpace!==Ut||k.isBatchedMesh&&Ct.batching===!1||!k.isBatchedMesh&&Ct.batching===!0||k.isBatchedMesh&&Ct.batchingColor===!0&&k.colorTexture===null||k.isBatchedMesh&&Ct.batchingColor===!1&&k.colorTexture!==null||k.isInstancedMesh&&Ct.instancing===!1||!k.isInstancedMesh&&Ct.instancing===!0||k.isSkinnedMesh&&Ct.skinning===!1||!k.isSkinnedMesh&&Ct.skinning===!0||k.isInstancedMesh&&Ct.instancingColor===!0&&k.instanceColor===null||k.isInstancedMesh&&Ct.instancingColor===!1&&k.instanceColor!==null||k.isInstancedMesh&&Ct.instancingMorph===!0&&k.morphTexture===null||k.isInstancedMesh&&Ct.instancingMorph===!1&&k.morphTexture!==null||Ct.envMap!==Lt||q.fog===!0&&Ct.fog!==ft||Ct.numClippingPlanes!==void 0&&(Ct.numClippingPlanes!==at.numPlanes||Ct.numIntersection!==at.numIntersection)||Ct.vertexAlphas!==Wt||Ct.vertexTangents!==qt||Ct.morphTargets!==Ot||Ct.morphNormals!==ae||Ct.morphColors!==ve||Ct.toneMapping!==Me||Ct.morphTargetsCount!==ue)&&(fe=!0):(fe=!0,Ct.__version=q.version);let mn=Ct.currentProgram;fe===!0&&(mn=Hs(q,O,k));let bi=!1,gn=!1,us=!1,Ae=mn.getUniforms(),Rn=Ct.uniforms;if(Nt.useProgram(mn.program)&&(bi=!0,gn=!0,us=!0),q.id!==E&&(E=q.id,gn=!0),bi||M!==S){Nt.buffers.depth.getReversed()?(ut.copy(S.projectionMatrix),Fg(ut),Bg(ut),Ae.setValue(z,"projectionMatrix",ut)):Ae.setValue(z,"projectionMatrix",S.projectionMatrix),Ae.setValue(z,"viewMatrix",S.matrixWorldInverse);let Kn=Ae.map.cameraPosition;Kn!==void 0&&Kn.setValue(z,Ht.setFromMatrixPosition(S.matrixWorld)),Zt.logarithmicDepthBuffer&&Ae.setValue(z,"logDepthBufFC",2/(Math.log(S.far+1)/Math.LN2)),(q.isMeshPhongMaterial||q.isMeshToonMaterial||q.isMeshLambertMaterial||q.isMeshBasicMaterial||q.isMeshStandardMaterial||q.isShaderMaterial)&&Ae.setValue(z,"isOrthographic",S.isOrthographicCamera===!0),M!==S&&(M=S,gn=!0,us=!0)}if(k.isSkinnedMesh){Ae.setOptional(z,k,"bindMatrix"),Ae.setOptional(z,k,"bindMatrixInverse");let Sn=k.skeleton;Sn&&(Sn.boneTexture===null&&Sn.computeBoneTexture(),Ae.setValue(z,"boneTexture",Sn.boneTexture,A))}k.isBatchedMesh&&(Ae.setOptional(z,k,"batchingTexture"),Ae.setValue(z,"batchingTexture",k._matricesTexture,A),Ae.setOptional(z,k,"batchingIdTexture"),Ae.setValue(z,"batchingIdTexture",k._indirectTexture,A),Ae.setOptional(z,k,"batchingColorTexture"),k._colorsTexture!==null&&Ae.setValue(z,"batchingColorTexture",k._colorsTexture,A));let Hi=G.morphAttributes;if((Hi.position!==void 0||Hi.normal!==void 0||Hi.color!==void 0)&&Vt.update(k,G,mn),(gn||Ct.receiveShadow!==k.receiveShadow)&&(Ct.receiveShadow=k.receiveShadow,Ae.setValue(z,"receiveShadow",k.receiveShadow)),q.isMeshGouraudMaterial&&q.envMap!==null&&(Rn.envMap.value=Lt,Rn.flipEnvMap.value=Lt.isCubeTexture&&Lt.isRenderTargetTexture===!1?-1:1),q.isMeshStandardMaterial&&q.envMap===null&&O.environment!==null&&(Rn.envMapIntensity.value=O.environmentIntensity),gn&&(Ae.setValue(z,"toneMappingExposure",b.toneMappingExposure),Ct.needsLights&&Eo(Rn,us),ft&&q.fog===!0&&gt.refreshFogUniforms(Rn,ft),gt.refreshMaterialUniforms(Rn,q,K,et,p.state.transmissionRenderTarget[S.id]),yr.upload(z,fi(Ct),Rn,A)),q.isShaderMaterial&&q.uniformsNeedUpdate===!0&&(yr.upload(z,fi(Ct),Rn,A),q.uniformsNeedUpdate=!1),q.isSpriteMaterial&&Ae.setValue(z,"center",k.center),Ae.setValue(z,"modelViewMatrix",k.modelViewMatrix),Ae.setValue(z,"normalMatrix",k.normalMatrix),Ae.setValue(z,"modelMatrix",k.matrixWorld),q.isShaderMaterial||q.isRawShaderMaterial){let Sn=q.uniformsGroups;for(let Kn=0,Hn=Sn.length;Kn<Hn;Kn++){let fs=Sn[Kn];U.update(fs,mn),U.bind(fs,mn)}}return mn}function Eo(S,O){S.ambientLightColor.needsUpdate=O,S.lightProbe.needsUpdate=O,S.directionalLights.needsUpdate=O,S.directionalLightShadows.needsUpdate=O,S.pointLights.needsUpdate=O,S.pointLightShadows.needsUpdate=O,S.spotLights.needsUpdate=O,S.spotLightShadows.needsUpdate=O,S.rectAreaLights.needsUpdate=O,S.hemisphereLights.needsUpdate=O}function di(S){return S.isMeshLambertMaterial||S.isMeshToonMaterial||S.isMeshPhongMaterial||S.isMeshStandardMaterial||S.isShadowMaterial||S.isShaderMaterial&&S.lights===!0}this.getActiveCubeFace=function(){return L},this.getActiveMipmapLevel=function(){return I},this.getRenderTarget=function(){return N},this.setRenderTargetTextures=function(S,O,G){Ft.get(S.texture).__webglTexture=O,Ft.get(S.depthTexture).__webglTexture=G;let q=Ft.get(S);q.__hasExternalTextures=!0,q.__autoAllocateDepthBuffer=G===void 0,q.__autoAllocateDepthBuffer||ee.has("WEBGL_multisampled_render_to_texture")===!0&&(console.warn("THREE.WebGLRenderer: Render-to-texture extension was disabled because an external texture was provided"),q.__useRenderToTexture=!1)},this.setRenderTargetFramebuffer=function(S,O){let G=Ft.get(S);G.__webglFramebuffer=O,G.__useDefaultFramebuffer=O===void 0},this.setRenderTarget=function(S,O=0,G=0){N=S,L=O,I=G;let q=!0,k=null,ft=!1,Mt=!1;if(S){let Lt=Ft.get(S);if(Lt.__useDefaultFramebuffer!==void 0)Nt.bindFramebuffer(z.FRAMEBUFFER,null),q=!1;else if(Lt.__webglFramebuffer===void 0)A.setupRenderTarget(S);else if(Lt.__hasExternalTextures)A.rebindTextures(S,Ft.get(S.texture).__webglTexture,Ft.get(S.depthTexture).__webglTexture);else if(S.depthBuffer){let Ot=S.depthTexture;if(Lt.__boundDepthTexture!==Ot){if(Ot!==null&&Ft.has(Ot)&&(S.width!==Ot.image.width||S.height!==Ot.image.height))throw new Error("WebGLRenderTarget: Attached DepthTexture is initialized to the incorrect size.");A.setupDepthRenderbuffer(S)}}let Wt=S.texture;(Wt.isData3DTexture||Wt.isDataArrayTexture||Wt.isCompressedArrayTexture)&&(Mt=!0);let qt=Ft.get(S).__webglFramebuffer;S.isWebGLCubeRenderTarget?(Array.isArray(qt[O])?k=qt[O][G]:k=qt[O],ft=!0):S.samples>0&&A.useMultisampledRTT(S)===!1?k=Ft.get(S).__webglMultisampledFramebuffer:Array.isArray(qt)?k=qt[G]:k=qt,C.copy(S.viewport),W.copy(S.scissor),V=S.scissorTest}else C.copy(mt).multiplyScalar(K).floor(),W.copy(dt).multiplyScalar(K).floor(),V=Gt;if(Nt.bindFramebuffer(z.FRAMEBUFFER,k)&&q&&Nt.drawBuffers(S,k),Nt.viewport(C),Nt.scissor(W),Nt.setScissorTest(V),ft){let Lt=Ft.get(S.texture);z.framebufferTexture2D(z.FRAMEBUFFER,z.COLOR_ATTACHMENT0,z.TEXTURE_CUBE_MAP_POSITIVE_X+O,Lt.__webglTexture,G)}else if(Mt){let Lt=Ft.get(S.texture),Wt=O||0;z.framebufferTextureLayer(z.FRAMEBUFFER,z.COLOR_ATTACHMENT0,Lt.__webglTexture,G||0,Wt)}E=-1},this.readRenderTargetPixels=function(S,O,G,q,k,ft,Mt){if(!(S&&S.isWebGLRenderTarget)){console.error("THREE.WebGLRenderer.readRenderTargetPixels: renderTarget is not THREE.WebGLRenderTarget.");return}let Ut=Ft.get(S).__webglFramebuffer;if(S.isWebGLCubeRenderTarget&&Mt!==void 0&&(Ut=Ut[Mt]),Ut){Nt.bindFramebuffer(z.FRAMEBUFFER,Ut);try{let Lt=S.texture,Wt=Lt.format,qt=Lt.type;if(!Zt.textureFormatReadable(Wt)){console.error("THREE.WebGLRenderer.readRenderTargetPixels: renderTarget is not in RGBA or implementation defined format.");return}if(!Zt.textureTypeReadable(qt)){console.error("THREE.WebGLRenderer.readRenderTargetPixels: renderTarget is not in UnsignedByteType or implementation defined type.");return}O>=0&&O<=S.width-q&&G>=0&&G<=S.height-k&&z.readPixels(O,G,q,k,Yt.convert(Wt),Yt.convert(qt),ft)}finally{let Lt=N!==null?Ft.get(N).__webglFramebuffer:null;Nt.bindFramebuffer(z.FRAMEBUFFER,Lt)}}},this.readRenderTargetPixelsAsync=async function(S,O,G,q,k,ft,Mt){if(!(S&&S.isWebGLRenderTarget))throw new Error("THREE.WebGLRenderer.readRenderTargetPixels: renderTarget is not THREE.WebGLRenderTarget.");let Ut=Ft.get(S).__webglFramebuffer;if(S.isWebGLCubeRenderTarget&&Mt!==void 0&&(Ut=Ut[Mt]),Ut){let Lt=S.texture,Wt=Lt.format,qt=Lt.type;if(!Zt.textureFormatReadable(Wt))throw new Error("THREE.WebGLRenderer.readRenderTargetPixelsAsync: renderTarget is not in RGBA or implementation defined format.");if(!Zt.textureTypeReadable(qt))throw new Error("THREE.WebGLRenderer.readRenderTargetPixelsAsync: renderTarget is not in UnsignedByteType or implementation defined type.");if(O>=0&&O<=S.width-q&&G>=0&&G<=S.height-k){Nt.bindFramebuffer(z.FRAMEBUFFER,Ut);let Ot=z.createBuffer();z.bindBuffer(z.PIXEL_PACK_BUFFER,Ot),z.bufferData(z.PIXEL_PACK_BUFFER,ft.byteLength,z.STREAM_READ),z.readPixels(O,G,q,k,Yt.convert(Wt),Yt.convert(qt),0);let ae=N!==null?Ft.get(N).__webglFramebuffer:null;Nt.bindFramebuffer(z.FRAMEBUFFER,ae);let ve=z.fenceSync(z.SYNC_GPU_COMMANDS_COMPLETE,0);return z.flush(),await Og(z,ve,4),z.bindBuffer(z.PIXEL_PACK_BUFFER,Ot),z.getBufferSubData(z.PIXEL_PACK_BUFFER,0,ft),z.deleteBuffer(Ot),z.deleteSync(ve),ft}else throw new Error("THREE.WebGLRenderer.readRenderTargetPixelsAsync: requested read bounds are out of range.")}},this.copyFramebufferToTexture=function(S,O=null,G=0){S.isTexture!==!0&&(no("WebGLRenderer: copyFramebufferToTexture function signature has changed."),O=arguments[0]||null,S=arguments[1]);let q=Math.pow(2,-G),k=Math.floor(S.image.width*q),ft=Math.floor(S.image.height*q),Mt=O!==null?O.x:0,Ut=O!==null?O.y:0;A.setTexture2D(S,0),z.copyTexSubImage2D(z.TEXTURE_2D,G,0,0,Mt,Ut,k,ft),Nt.unbindTexture()},this.copyTextureToTexture=function(S,O,G=null,q=null,k=0){S.isTexture!==!0&&(no("WebGLRenderer: copyTextureToTexture function signature has changed."),q=arguments[0]||null,S=arguments[1],O=arguments[2],k=arguments[3]||0,G=null);let ft,Mt,Ut,Lt,Wt,qt,Ot,ae,ve,Me=S.isCompressedTexture?S.mipmaps[k]:S.image;G!==null?(ft=G.max.x-G.min.x,Mt=G.max.y-G.min.y,Ut=G.isBox3?G.max.z-G.min.z:1,Lt=G.min.x,Wt=G.min.y,qt=G.isBox3?G.min.z:0):(ft=Me.width,Mt=Me.height,Ut=Me.depth||1,Lt=0,Wt=0,qt=0),q!==null?(Ot=q.x,ae=q.y,ve=q.z):(Ot=0,ae=0,ve=0);let nn=Yt.convert(O.format),ue=Yt.convert(O.type),Ct;O.isData3DTexture?(A.setTexture3D(O,0),Ct=z.TEXTURE_3D):O.isDataArrayTexture||O.isCompressedArrayTexture?(A.setTexture2DArray(O,0),Ct=z.TEXTURE_2D_ARRAY):(A.setTexture2D(O,0),Ct=z.TEXTURE_2D),z.pixelStorei(z.UNPACK_FLIP_Y_WEBGL,O.flipY),z.pixelStorei(z.UNPACK_PREMULTIPLY_ALPHA_WEBGL,O.premultiplyAlpha),z.pixelStorei(z.UNPACK_ALIGNMENT,O.unpackAlignment);let Vn=z.getParameter(z.UNPACK_ROW_LENGTH),fe=z.getParameter(z.UNPACK_IMAGE_HEIGHT),mn=z.getParameter(z.UNPACK_SKIP_PIXELS),bi=z.getParameter(z.UNPACK_SKIP_ROWS),gn=z.getParameter(z.UNPACK_SKIP_IMAGES);z.pixelStorei(z.UNPACK_ROW_LENGTH,Me.width),z.pixelStorei(z.UNPACK_IMAGE_HEIGHT,Me.height),z.pixelStorei(z.UNPACK_SKIP_PIXELS,Lt),z.pixelStorei(z.UNPACK_SKIP_ROWS,Wt),z.pixelStorei(z.UNPACK_SKIP_IMAGES,qt);let us=S.isDataArrayTexture||S.isData3DTexture,Ae=O.isDataArrayTexture||O.isData3DTexture;if(S.isRenderTargetTexture||S.isDepthTexture){let Rn=Ft.get(S),Hi=Ft.get(O),Sn=Ft.get(Rn.__renderTarget),Kn=Ft.get(Hi.__renderTarget);Nt.bindFramebuffer(z.READ_FRAMEBUFFER,Sn.__webglFramebuffer),Nt.bindFramebuffer(z.DRAW_FRAMEBUFFER,Kn.__webglFramebuffer);for(let Hn=0;Hn<Ut;Hn++)us&&z.framebufferTextureLayer(z.READ_FRAMEBUFFER,z.COLOR_ATTACHMENT0,Ft.get(S).__webglTexture,k,qt+Hn),S.isDepthTexture?(Ae&&z.framebufferTextureLayer(z.DRAW_FRAMEBUFFER,z.COLOR_ATTACHMENT0,Ft.get(O).__webglTexture,k,ve+Hn),z.blitFramebuffer(Lt,Wt,ft,Mt,Ot,ae,ft,Mt,z.DEPTH_BUFFER_BIT,z.NEAREST)):Ae?z.copyTexSubImage3D(Ct,k,Ot,ae,ve+Hn,Lt,Wt,ft,Mt):z.copyTexSubImage2D(Ct,k,Ot,ae,ve+Hn,Lt,Wt,ft,Mt);Nt.bindFramebuffer(z.READ_FRAMEBUFFER,null),Nt.bindFramebuffer(z.DRAW_FRAMEBUFFER,null)}else Ae?S.isDataTexture||S.isData3DTexture?z.texSubImage3D(Ct,k,Ot,ae,ve,ft,Mt,Ut,nn,ue,Me.data):O.isCompressedArrayTexture?z.compressedTexSubImage3D(Ct,k,Ot,ae,ve,ft,Mt,Ut,nn,Me.data):z.texSubImage3D(Ct,k,Ot,ae,ve,ft,Mt,Ut,nn,ue,Me):S.isDataTexture?z.texSubImage2D(z.TEXTURE_2D,k,Ot,ae,ft,Mt,nn,ue,Me.data):S.isCompressedTexture?z.compressedTexSubImage2D(z.TEXTURE_2D,k,Ot,ae,Me.width,Me.height,nn,Me.data):z.texSubImage2D(z.TEXTURE_2D,k,Ot,ae,ft,Mt,nn,ue,Me);z.pixelStorei(z.UNPACK_ROW_LENGTH,Vn),z.pixelStorei(z.UNPACK_IMAGE_HEIGHT,fe),z.pixelStorei(z.UNPACK_SKIP_PIXELS,mn),z.pixelStorei(z.UNPACK_SKIP_ROWS,bi),z.pixelStorei(z.UNPACK_SKIP_IMAGES,gn),k===0&&O.generateMipmaps&&z.generateMipmap(Ct),Nt.unbindTexture()},this.copyTextureToTexture3D=function(S,O,G=null,q=null,k=0){return S.isTexture!==!0&&(no("WebGLRenderer: copyTextureToTexture3D function signature has changed."),G=arguments[0]||null,q=arguments[1]||null,S=arguments[2],O=arguments[3],k=arguments[4]||0),no('WebGLRenderer: copyTextureToTexture3D function has been deprecated. Use "copyTextureToTexture" instead.'),this.copyTextureToTexture(S,O,G,q,k)},this.initRenderTarget=function(S){Ft.get(S).__webglFramebuffer===void 0&&A.setupRenderTarget(S)},this.initTexture=function(S){S.isCubeTexture?A.setTextureCube(S,0):S.isData3DTexture?A.setTexture3D(S,0):S.isDataArrayTexture||S.isCompressedArrayTexture?A.setTexture2DArray(S,0):A.setTexture2D(S,0),Nt.unbindTexture()},this.resetState=function(){L=0,I=0,N=null,Nt.reset(),ge.reset()},typeof __THREE_DEVTOOLS__<"u"&&__THREE_DEVTOOLS__.dispatchEvent(new CustomEvent("observe",{detail:this}))}get coordinateSystem(){return Ni}get outputColorSpace(){return this._outputColorSpace}set outputColorSpace(t){this._outputColorSpace=t;let e=this.getContext();e.drawingBufferColorspace=de._getDrawingBufferColorSpace(t),e.unpackColorSpace=de._getUnpackColorSpace()}};var Ea=class extends Fn{constructor(){super(),this.isScene=!0,this.type="Scene",this.background=null,this.environment=null,this.fog=null,this.backgroundBlurriness=0,this.backgroundIntensity=1,this.backgroundRotation=new ki,this.environmentIntensity=1,this.environmentRotation=new ki,this.overrideMaterial=null,typeof __THREE_DEVTOOLS__<"u"&&__THREE_DEVTOOLS__.dispatchEvent(new CustomEvent("observe",{detail:this}))}copy(t,e){return super.copy(t,e),t.background!==null&&(this.background=t.background.clone()),t.environment!==null&&(this.environment=t.environment.clone()),t.fog!==null&&(this.fog=t.fog.clone()),this.backgroundBlurriness=t.backgroundBlurriness,this.backgroundIntensity=t.backgroundIntensity,this.backgroundRotation.copy(t.backgroundRotation),this.environmentIntensity=t.environmentIntensity,this.environmentRotation.copy(t.environmentRotation),t.overrideMaterial!==null&&(this.overrideMaterial=t.overrideMaterial.clone()),this.matrixAutoUpdate=t.matrixAutoUpdate,this}toJSON(t){let e=super.toJSON(t);return this.fog!==null&&(e.object.fog=this.fog.toJSON()),this.backgroundBlurriness>0&&(e.object.backgroundBlurriness=this.backgroundBlurriness),this.backgroundIntensity!==1&&(e.object.backgroundIntensity=this.backgroundIntensity),e.object.backgroundRotation=this.backgroundRotation.toArray(),this.environmentIntensity!==1&&(e.object.environmentIntensity=this.environmentIntensity),e.object.environmentRotation=this.environmentRotation.toArray(),e}};var Ta=class extends On{constructor(t=null,e=1,n=1,s,r,o,a,l,c=Un,u=Un,f,h){super(null,o,a,l,c,u,s,r,f,h),this.isDataTexture=!0,this.image={data:t,width:e,height:n},this.generateMipmaps=!1,this.flipY=!1,this.unpackAlignment=1}};var nh=class extends ss{static get type(){return"LineBasicMaterial"}constructor(t){super(),this.isLineBasicMaterial=!0,this.color=new pe(16777215),this.map=null,this.linewidth=1,this.linecap="round",this.linejoin="round",this.fog=!0,this.setValues(t)}copy(t){return super.copy(t),this.color.copy(t.color),this.map=t.map,this.linewidth=t.linewidth,this.linecap=t.linecap,this.linejoin=t.linejoin,this.fog=t.fog,this}},Aa=new H,Ca=new H,Hf=new Ve,eo=new Ps,Qo=new Rs,Ql=new H,Gf=new H,ih=class extends Fn{constructor(t=new cn,e=new nh){super(),this.isLine=!0,this.type="Line",this.geometry=t,this.material=e,this.updateMorphTargets()}copy(t,e){return super.copy(t,e),this.material=Array.isArray(t.material)?t.material.slice():t.material,this.geometry=t.geometry,this}computeLineDistances(){let t=this.geometry;if(t.index===null){let e=t.attributes.position,n=[0];for(let s=1,r=e.count;s<r;s++)Aa.fromBufferAttribute(e,s-1),Ca.fromBufferAttribute(e,s),n[s]=n[s-1],n[s]+=Aa.distanceTo(Ca);t.setAttribute("lineDistance",new oi(n,1))}else console.warn("THREE.Line.computeLineDistances(): Computation only possible with non-indexed BufferGeometry.");return this}raycast(t,e){let n=this.geometry,s=this.matrixWorld,r=t.params.Line.threshold,o=n.drawRange;if(n.boundingSphere===null&&n.computeBoundingSphere(),Qo.copy(n.boundingSphere),Qo.applyMatrix4(s),Qo.radius+=r,t.ray.intersectsSphere(Qo)===!1)return;Hf.copy(s).invert(),eo.copy(t.ray).applyMatrix4(Hf);let a=r/((this.scale.x+this.scale.y+this.scale.z)/3),l=a*a,c=this.isLineSegments?2:1,u=n.index,h=n.attributes.position;if(u!==null){let d=Math.max(0,o.start),_=Math.min(u.count,o.start+o.count);for(let x=d,m=_-1;x<m;x+=c){let p=u.getX(x),T=u.getX(x+1),w=ta(this,t,eo,l,p,T);w&&e.push(w)}if(this.isLineLoop){let x=u.getX(_-1),m=u.getX(d),p=ta(this,t,eo,l,x,m);p&&e.push(p)}}else{let d=Math.max(0,o.start),_=Math.min(h.count,o.start+o.count);for(let x=d,m=_-1;x<m;x+=c){let p=ta(this,t,eo,l,x,x+1);p&&e.push(p)}if(this.isLineLoop){let x=ta(this,t,eo,l,_-1,d);x&&e.push(x)}}}updateMorphTargets(){let e=this.geometry.morphAttributes,n=Object.keys(e);if(n.length>0){let s=e[n[0]];if(s!==void 0){this.morphTargetInfluences=[],this.morphTargetDictionary={};for(let r=0,o=s.length;r<o;r++){let a=s[r].name||String(r);this.morphTargetInfluences.push(0),this.morphTargetDictionary[a]=r}}}}};function ta(i,t,e,n,s,r){let o=i.geometry.attributes.position;if(Aa.fromBufferAttribute(o,s),Ca.fromBufferAttribute(o,r),e.distanceSqToSegment(Aa,Ca,Ql,Gf)>n)return;Ql.applyMatrix4(i.matrixWorld);let l=t.ray.origin.distanceTo(Ql);if(!(l<t.near||l>t.far))return{distance:l,point:Gf.clone().applyMatrix4(i.matrixWorld),index:s,face:null,faceIndex:null,barycoord:null,object:i}}var Wf=new H,Xf=new H,uo=class extends ih{constructor(t,e){super(t,e),this.isLineSegments=!0,this.type="LineSegments"}computeLineDistances(){let t=this.geometry;if(t.index===null){let e=t.attributes.position,n=[];for(let s=0,r=e.count;s<r;s+=2)Wf.fromBufferAttribute(e,s),Xf.fromBufferAttribute(e,s+1),n[s]=s===0?0:n[s-1],n[s+1]=n[s]+Wf.distanceTo(Xf);t.setAttribute("lineDistance",new oi(n,1))}else console.warn("THREE.LineSegments.computeLineDistances(): Computation only possible with non-indexed BufferGeometry.");return this}};var sh=class extends ss{static get type(){return"PointsMaterial"}constructor(t){super(),this.isPointsMaterial=!0,this.color=new pe(16777215),this.map=null,this.alphaMap=null,this.size=1,this.sizeAttenuation=!0,this.fog=!0,this.setValues(t)}copy(t){return super.copy(t),this.color.copy(t.color),this.map=t.map,this.alphaMap=t.alphaMap,this.size=t.size,this.sizeAttenuation=t.sizeAttenuation,this.fog=t.fog,this}},Yf=new Ve,rh=new Ps,ea=new Rs,na=new H,Ra=class extends Fn{constructor(t=new cn,e=new sh){super(),this.isPoints=!0,this.type="Points",this.geometry=t,this.material=e,this.updateMorphTargets()}copy(t,e){return super.copy(t,e),this.material=Array.isArray(t.material)?t.material.slice():t.material,this.geometry=t.geometry,this}raycast(t,e){let n=this.geometry,s=this.matrixWorld,r=t.params.Points.threshold,o=n.drawRange;if(n.boundingSphere===null&&n.computeBoundingSphere(),ea.copy(n.boundingSphere),ea.applyMatrix4(s),ea.radius+=r,t.ray.intersectsSphere(ea)===!1)return;Yf.copy(s).invert(),rh.copy(t.ray).applyMatrix4(Yf);let a=r/((this.scale.x+this.scale.y+this.scale.z)/3),l=a*a,c=n.index,f=n.attributes.position;if(c!==null){let h=Math.max(0,o.start),d=Math.min(c.count,o.start+o.count);for(let _=h,x=d;_<x;_++){let m=c.getX(_);na.fromBufferAttribute(f,m),qf(na,m,l,s,t,e,this)}}else{let h=Math.max(0,o.start),d=Math.min(f.count,o.start+o.count);for(let _=h,x=d;_<x;_++)na.fromBufferAttribute(f,_),qf(na,_,l,s,t,e,this)}}updateMorphTargets(){let e=this.geometry.morphAttributes,n=Object.keys(e);if(n.length>0){let s=e[n[0]];if(s!==void 0){this.morphTargetInfluences=[],this.morphTargetDictionary={};for(let r=0,o=s.length;r<o;r++){let a=s[r].name||String(r);this.morphTargetInfluences.push(0),this.morphTargetDictionary[a]=r}}}}};function qf(i,t,e,n,s,r,o){let a=rh.distanceSqToPoint(i);if(a<e){let l=new H;rh.closestPointToPoint(i,l),l.applyMatrix4(n);let c=s.ray.origin.distanceTo(l);if(c<s.near||c>s.far)return;r.push({distance:c,distanceToRay:Math.sqrt(a),point:l,index:t,face:null,faceIndex:null,barycoord:null,object:o})}}function ia(i,t,e){return!i||!e&&i.constructor===t?i:typeof t.BYTES_PER_ELEMENT=="number"?new t(i):Array.prototype.slice.call(i)}function Ly(i){return ArrayBuffer.isView(i)&&!(i instanceof DataView)}var Ar=class{constructor(t,e,n,s){this.parameterPositions=t,this._cachedIndex=0,this.resultBuffer=s!==void 0?s:new e.constructor(n),this.sampleValues=e,this.valueSize=n,this.settings=null,this.DefaultSettings_={}}evaluate(t){let e=this.parameterPositions,n=this._cachedIndex,s=e[n],r=e[n-1];n:{t:{let o;e:{i:if(!(t<s)){for(let a=n+2;;){if(s===void 0){if(t<r)break i;return n=e.length,this._cachedIndex=n,this.copySampleValue_(n-1)}if(n===a)break;if(r=s,s=e[++n],t<s)break t}o=e.length;break e}if(!(t>=r)){let a=e[1];t<a&&(n=2,r=a);for(let l=n-2;;){if(r===void 0)return this._cachedIndex=0,this.copySampleValue_(0);if(n===l)break;if(s=r,r=e[--n-1],t>=r)break t}o=n,n=0;break e}break n}for(;n<o;){let a=n+o>>>1;t<e[a]?o=a:n=a+1}if(s=e[n],r=e[n-1],r===void 0)return this._cachedIndex=0,this.copySampleValue_(0);if(s===void 0)return n=e.length,this._cachedIndex=n,this.copySampleValue_(n-1)}this._cachedIndex=n,this.intervalChanged_(n,r,s)}return this.interpolate_(n,r,t,s)}getSettings_(){return this.settings||this.DefaultSettings_}copySampleValue_(t){let e=this.resultBuffer,n=this.sampleValues,s=this.valueSize,r=t*s;for(let o=0;o!==s;++o)e[o]=n[r+o];return e}interpolate_(){throw new Error("call to abstract method")}intervalChanged_(){}},oh=class extends Ar{constructor(t,e,n,s){super(t,e,n,s),this._weightPrev=-0,this._offsetPrev=-0,this._weightNext=-0,this._offsetNext=-0,this.DefaultSettings_={endingStart:Wu,endingEnd:Wu}}intervalChanged_(t,e,n){let s=this.parameterPositions,r=t-2,o=t+1,a=s[r],l=s[o];if(a===void 0)switch(this.getSettings_().endingStart){case Xu:r=t,a=2*e-n;break;case Yu:r=s.length-2,a=e+s[r]-s[r+1];break;default:r=t,a=n}if(l===void 0)switch(this.getSettings_().endingEnd){case Xu:o=t,l=2*n-e;break;case Yu:o=1,l=n+s[1]-s[0];break;default:o=t-1,l=e}let c=(n-e)*.5,u=this.valueSize;this._weightPrev=c/(e-a),this._weightNext=c/(l-n),this._offsetPrev=r*u,this._offsetNext=o*u}interpolate_(t,e,n,s){let r=this.resultBuffer,o=this.sampleValues,a=this.valueSize,l=t*a,c=l-a,u=this._offsetPrev,f=this._offsetNext,h=this._weightPrev,d=this._weightNext,_=(n-e)/(s-e),x=_*_,m=x*_,p=-h*m+2*h*x-h*_,T=(1+h)*m+(-1.5-2*h)*x+(-.5+h)*_+1,w=(-1-d)*m+(1.5+d)*x+.5*_,b=d*m-d*x;for(let D=0;D!==a;++D)r[D]=p*o[u+D]+T*o[c+D]+w*o[l+D]+b*o[f+D];return r}},ah=class extends Ar{constructor(t,e,n,s){super(t,e,n,s)}interpolate_(t,e,n,s){let r=this.resultBuffer,o=this.sampleValues,a=this.valueSize,l=t*a,c=l-a,u=(n-e)/(s-e),f=1-u;for(let h=0;h!==a;++h)r[h]=o[c+h]*f+o[l+h]*u;return r}},lh=class extends Ar{constructor(t,e,n,s){super(t,e,n,s)}interpolate_(t){return this.copySampleValue_(t-1)}},li=class{constructor(t,e,n,s){if(t===void 0)throw new Error("THREE.KeyframeTrack: track name is undefined");if(e===void 0||e.length===0)throw new Error("THREE.KeyframeTrack: no keyframes in track named "+t);this.name=t,this.times=ia(e,this.TimeBufferType),this.values=ia(n,this.ValueBufferType),this.setInterpolation(s||this.DefaultInterpolation)}static toJSON(t){let e=t.constructor,n;if(e.toJSON!==this.toJSON)n=e.toJSON(t);else{n={name:t.name,times:ia(t.times,Array),values:ia(t.values,Array)};let s=t.getInterpolation();s!==t.DefaultInterpolation&&(n.interpolation=s)}return n.type=t.ValueTypeName,n}InterpolantFactoryMethodDiscrete(t){return new lh(this.times,this.values,this.getValueSize(),t)}InterpolantFactoryMethodLinear(t){return new ah(this.times,this.values,this.getValueSize(),t)}InterpolantFactoryMethodSmooth(t){return new oh(this.times,this.values,this.getValueSize(),t)}setInterpolation(t){let e;switch(t){case ca:e=this.InterpolantFactoryMethodDiscrete;break;case kc:e=this.InterpolantFactoryMethodLinear;break;case Tl:e=this.InterpolantFactoryMethodSmooth;break}if(e===void 0){let n="unsupported interpolation for "+this.ValueTypeName+" keyframe track named "+this.name;if(this.createInterpolant===void 0)if(t!==this.DefaultInterpolation)this.setInterpolation(this.DefaultInterpolation);else throw new Error(n);return console.warn("THREE.KeyframeTrack:",n),this}return this.createInterpolant=e,this}getInterpolation(){switch(this.createInterpolant){case this.InterpolantFactoryMethodDiscrete:return ca;case this.InterpolantFactoryMethodLinear:return kc;case this.InterpolantFactoryMethodSmooth:return Tl}}getValueSize(){return this.values.length/this.times.length}shift(t){if(t!==0){let e=this.times;for(let n=0,s=e.length;n!==s;++n)e[n]+=t}return this}scale(t){if(t!==1){let e=this.times;for(let n=0,s=e.length;n!==s;++n)e[n]*=t}return this}trim(t,e){let n=this.times,s=n.length,r=0,o=s-1;for(;r!==s&&n[r]<t;)++r;for(;o!==-1&&n[o]>e;)--o;if(++o,r!==0||o!==s){r>=o&&(o=Math.max(o,1),r=o-1);let a=this.getValueSize();this.times=n.slice(r,o),this.values=this.values.slice(r*a,o*a)}return this}validate(){let t=!0,e=this.getValueSize();e-Math.floor(e)!==0&&(console.error("THREE.KeyframeTrack: Invalid value size in track.",this),t=!1);let n=this.times,s=this.values,r=n.length;r===0&&(console.error("THREE.KeyframeTrack: Track is empty.",this),t=!1);let o=null;for(let a=0;a!==r;a++){let l=n[a];if(typeof l=="number"&&isNaN(l)){console.error("THREE.KeyframeTrack: Time is not a valid number.",this,a,l),t=!1;break}if(o!==null&&o>l){console.error("THREE.KeyframeTrack: Out of order keys.",this,a,l,o),t=!1;break}o=l}if(s!==void 0&&Ly(s))for(let a=0,l=s.length;a!==l;++a){let c=s[a];if(isNaN(c)){console.error("THREE.KeyframeTrack: Value is not a valid number.",this,a,c),t=!1;break}}return t}optimize(){let t=this.times.slice(),e=this.values.slice(),n=this.getValueSize(),s=this.getInterpolation()===Tl,r=t.length-1,o=1;for(let a=1;a<r;++a){let l=!1,c=t[a],u=t[a+1];if(c!==u&&(a!==1||c!==t[0]))if(s)l=!0;else{let f=a*n,h=f-n,d=f+n;for(let _=0;_!==n;++_){let x=e[f+_];if(x!==e[h+_]||x!==e[d+_]){l=!0;break}}}if(l){if(a!==o){t[o]=t[a];let f=a*n,h=o*n;for(let d=0;d!==n;++d)e[h+d]=e[f+d]}++o}}if(r>0){t[o]=t[r];for(let a=r*n,l=o*n,c=0;c!==n;++c)e[l+c]=e[a+c];++o}return o!==t.length?(this.times=t.slice(0,o),this.values=e.slice(0,o*n)):(this.times=t,this.values=e),this}clone(){let t=this.times.slice(),e=this.values.slice(),n=this.constructor,s=new n(this.name,t,e);return s.createInterpolant=this.createInterpolant,s}};li.prototype.TimeBufferType=Float32Array;li.prototype.ValueBufferType=Float32Array;li.prototype.DefaultInterpolation=kc;var Is=class extends li{constructor(t,e,n){super(t,e,n)}};Is.prototype.ValueTypeName="bool";Is.prototype.ValueBufferType=Array;Is.prototype.DefaultInterpolation=ca;Is.prototype.InterpolantFactoryMethodLinear=void 0;Is.prototype.InterpolantFactoryMethodSmooth=void 0;var ch=class extends li{};ch.prototype.ValueTypeName="color";var hh=class extends li{};hh.prototype.ValueTypeName="number";var uh=class extends Ar{constructor(t,e,n,s){super(t,e,n,s)}interpolate_(t,e,n,s){let r=this.resultBuffer,o=this.sampleValues,a=this.valueSize,l=(n-e)/(s-e),c=t*a;for(let u=c+a;c!==u;c+=4)ai.slerpFlat(r,0,o,c-a,o,c,l);return r}},Pa=class extends li{InterpolantFactoryMethodLinear(t){return new uh(this.times,this.values,this.getValueSize(),t)}};Pa.prototype.ValueTypeName="quaternion";Pa.prototype.InterpolantFactoryMethodSmooth=void 0;var Ls=class extends li{constructor(t,e,n){super(t,e,n)}};Ls.prototype.ValueTypeName="string";Ls.prototype.ValueBufferType=Array;Ls.prototype.DefaultInterpolation=ca;Ls.prototype.InterpolantFactoryMethodLinear=void 0;Ls.prototype.InterpolantFactoryMethodSmooth=void 0;var fh=class extends li{};fh.prototype.ValueTypeName="vector";var dh=class{constructor(t,e,n){let s=this,r=!1,o=0,a=0,l,c=[];this.onStart=void 0,this.onLoad=t,this.onProgress=e,this.onError=n,this.itemStart=function(u){a++,r===!1&&s.onStart!==void 0&&s.onStart(u,o,a),r=!0},this.itemEnd=function(u){o++,s.onProgress!==void 0&&s.onProgress(u,o,a),o===a&&(r=!1,s.onLoad!==void 0&&s.onLoad())},this.itemError=function(u){s.onError!==void 0&&s.onError(u)},this.resolveURL=function(u){return l?l(u):u},this.setURLModifier=function(u){return l=u,this},this.addHandler=function(u,f){return c.push(u,f),this},this.removeHandler=function(u){let f=c.indexOf(u);return f!==-1&&c.splice(f,2),this},this.getHandler=function(u){for(let f=0,h=c.length;f<h;f+=2){let d=c[f],_=c[f+1];if(d.global&&(d.lastIndex=0),d.test(u))return _}return null}}},Dy=new dh,ph=class{constructor(t){this.manager=t!==void 0?t:Dy,this.crossOrigin="anonymous",this.withCredentials=!1,this.path="",this.resourcePath="",this.requestHeader={}}load(){}loadAsync(t,e){let n=this;return new Promise(function(s,r){n.load(t,s,e,r)})}parse(){}setCrossOrigin(t){return this.crossOrigin=t,this}setWithCredentials(t){return this.withCredentials=t,this}setPath(t){return this.path=t,this}setResourcePath(t){return this.resourcePath=t,this}setRequestHeader(t){return this.requestHeader=t,this}};ph.DEFAULT_MATERIAL_NAME="__DEFAULT";var Eh="\\[\\]\\.:\\/",Ny=new RegExp("["+Eh+"]","g"),Th="[^"+Eh+"]",Uy="[^"+Eh.replace("\\.","")+"]",Oy=/((?:WC+[\/:])*)/.source.replace("WC",Th),Fy=/(WCOD+)?/.source.replace("WCOD",Uy),By=/(?:\.(WC+)(?:\[(.+)\])?)?/.source.replace("WC",Th),ky=/\.(WC+)(?:\[(.+)\])?/.source.replace("WC",Th),zy=new RegExp("^"+Oy+Fy+By+ky+"$"),Vy=["material","materials","bones","map"],mh=class{constructor(t,e,n){let s=n||Fe.parseTrackName(e);this._targetGroup=t,this._bindings=t.subscribe_(e,s)}getValue(t,e){this.bind();let n=this._targetGroup.nCachedObjects_,s=this._bindings[n];s!==void 0&&s.getValue(t,e)}setValue(t,e){let n=this._bindings;for(let s=this._targetGroup.nCachedObjects_,r=n.length;s!==r;++s)n[s].setValue(t,e)}bind(){let t=this._bindings;for(let e=this._targetGroup.nCachedObjects_,n=t.length;e!==n;++e)t[e].bind()}unbind(){let t=this._bindings;for(let e=this._targetGroup.nCachedObjects_,n=t.length;e!==n;++e)t[e].unbind()}},Fe=class i{constructor(t,e,n){this.path=e,this.parsedPath=n||i.parseTrackName(e),this.node=i.findNode(t,this.parsedPath.nodeName),this.rootNode=t,this.getValue=this._getValue_unbound,this.setValue=this._setValue_unbound}static create(t,e,n){return t&&t.isAnimationObjectGroup?new i.Composite(t,e,n):new i(t,e,n)}static sanitizeNodeName(t){return t.replace(/\s/g,"_").replace(Ny,"")}static parseTrackName(t){let e=zy.exec(t);if(e===null)throw new Error("PropertyBinding: Cannot parse trackName: "+t);let n={nodeName:e[2],objectName:e[3],objectIndex:e[4],propertyName:e[5],propertyIndex:e[6]},s=n.nodeName&&n.nodeName.lastIndexOf(".");if(s!==void 0&&s!==-1){let r=n.nodeName.substring(s+1);Vy.indexOf(r)!==-1&&(n.nodeName=n.nodeName.substring(0,s),n.objectName=r)}if(n.propertyName===null||n.propertyName.length===0)throw new Error("PropertyBinding: can not parse propertyName from trackName: "+t);return n}static findNode(t,e){if(e===void 0||e===""||e==="."||e===-1||e===t.name||e===t.uuid)return t;if(t.skeleton){let n=t.skeleton.getBoneByName(e);if(n!==void 0)return n}if(t.children){let n=function(r){for(let o=0;o<r.length;o++){let a=r[o];if(a.name===e||a.uuid===e)return a;let l=n(a.children);if(l)return l}return null},s=n(t.children);if(s)return s}return null}_getValue_unavailable(){}_setValue_unavailable(){}_getValue_direct(t,e){t[e]=this.targetObject[this.propertyName]}_getValue_array(t,e){let n=this.resolvedProperty;for(let s=0,r=n.length;s!==r;++s)t[e++]=n[s]}_getValue_arrayElement(t,e){t[e]=this.resolvedProperty[this.propertyIndex]}_getValue_toArray(t,e){this.resolvedProperty.toArray(t,e)}_setValue_direct(t,e){this.targetObject[this.propertyName]=t[e]}_setValue_direct_setNeedsUpdate(t,e){this.targetObject[this.propertyName]=t[e],this.targetObject.needsUpdate=!0}_setValue_direct_setMatrixWorldNeedsUpdate(t,e){this.targetObject[this.propertyName]=t[e],this.targetObject.matrixWorldNeedsUpdate=!0}_setValue_array(t,e){let n=this.resolvedProperty;for(let s=0,r=n.length;s!==r;++s)n[s]=t[e++]}_setValue_array_setNeedsUpdate(t,e){let n=this.resolvedProperty;for(let s=0,r=n.length;s!==r;++s)n[s]=t[e++];this.targetObject.needsUpdate=!0}_setValue_array_setMatrixWorldNeedsUpdate(t,e){let n=this.resolvedProperty;for(let s=0,r=n.length;s!==r;++s)n[s]=t[e++];this.targetObject.matrixWorldNeedsUpdate=!0}_setValue_arrayElement(t,e){this.resolvedProperty[this.propertyIndex]=t[e]}_setValue_arrayElement_setNeedsUpdate(t,e){this.resolvedProperty[this.propertyIndex]=t[e],this.targetObject.needsUpdate=!0}_setValue_arrayElement_setMatrixWorldNeedsUpdate(t,e){this.resolvedProperty[this.propertyIndex]=t[e],this.targetObject.matrixWorldNeedsUpdate=!0}_setValue_fromArray(t,e){this.resolvedProperty.fromArray(t,e)}_setValue_fromArray_setNeedsUpdate(t,e){this.resolvedProperty.fromArray(t,e),this.targetObject.needsUpdate=!0}_setValue_fromArray_setMatrixWorldNeedsUpdate(t,e){this.resolvedProperty.fromArray(t,e),this.targetObject.matrixWorldNeedsUpdate=!0}_getValue_unbound(t,e){this.bind(),this.getValue(t,e)}_setValue_unbound(t,e){this.bind(),this.setValue(t,e)}bind(){let t=this.node,e=this.parsedPath,n=e.objectName,s=e.propertyName,r=e.propertyIndex;if(t||(t=i.findNode(this.rootNode,e.nodeName),this.node=t),this.getValue=this._getValue_unavailable,this.setValue=this._setValue_unavailable,!t){console.warn("THREE.PropertyBinding: No target node found for track: "+this.path+".");return}if(n){let c=e.objectIndex;switch(n){case"materials":if(!t.material){console.error("THREE.PropertyBinding: Can not bind to material as node does not have a material.",this);return}if(!t.material.materials){console.error("THREE.PropertyBinding: Can not bind to material.materials as node.material does not have a materials array.",this);return}t=t.material.materials;break;case"bones":if(!t.skeleton){console.error("THREE.PropertyBinding: Can not bind to bones as node does not have a skeleton.",this);return}t=t.skeleton.bones;for(let u=0;u<t.length;u++)if(t[u].name===c){c=u;break}break;case"map":if("map"in t){t=t.map;break}if(!t.material){console.error("THREE.PropertyBinding: Can not bind to material as node does not have a material.",this);return}if(!t.material.map){console.error("THREE.PropertyBinding: Can not bind to material.map as node.material does not have a map.",this);return}t=t.material.map;break;default:if(t[n]===void 0){console.error("THREE.PropertyBinding: Can not bind to objectName of node undefined.",this);return}t=t[n]}if(c!==void 0){if(t[c]===void 0){console.error("THREE.PropertyBinding: Trying to bind to objectIndex of objectName, but is undefined.",this,t);return}t=t[c]}}let o=t[s];if(o===void 0){let c=e.nodeName;console.error("THREE.PropertyBinding: Trying to update property for track: "+c+"."+s+" but it wasn't found.",t);return}let a=this.Versioning.None;this.targetObject=t,t.needsUpdate!==void 0?a=this.Versioning.NeedsUpdate:t.matrixWorldNeedsUpdate!==void 0&&(a=this.Versioning.MatrixWorldNeedsUpdate);let l=this.BindingType.Direct;if(r!==void 0){if(s==="morphTargetInfluences"){if(!t.geometry){console.error("THREE.PropertyBinding: Can not bind to morphTargetInfluences because node does not have a geometry.",this);return}if(!t.geometry.morphAttributes){console.error("THREE.PropertyBinding: Can not bind to morphTargetInfluences because node does not have a geometry.morphAttributes.",this);return}t.morphTargetDictionary[r]!==void 0&&(r=t.morphTargetDictionary[r])}l=this.BindingType.ArrayElement,this.resolvedProperty=o,this.propertyIndex=r}else o.fromArray!==void 0&&o.toArray!==void 0?(l=this.BindingType.HasFromToArray,this.resolvedProperty=o):Array.isArray(o)?(l=this.BindingType.EntireArray,this.resolvedProperty=o):this.propertyName=s;this.getValue=this.GetterByBindingType[l],this.setValue=this.SetterByBindingTypeAndVersioning[l][a]}unbind(){this.node=null,this.getValue=this._getValue_unbound,this.setValue=this._setValue_unbound}};Fe.Composite=mh;Fe.prototype.BindingType={Direct:0,EntireArray:1,ArrayElement:2,HasFromToArray:3};Fe.prototype.Versioning={None:0,NeedsUpdate:1,MatrixWorldNeedsUpdate:2};Fe.prototype.GetterByBindingType=[Fe.prototype._getValue_direct,Fe.prototype._getValue_array,Fe.prototype._getValue_arrayElement,Fe.prototype._getValue_toArray];Fe.prototype.SetterByBindingTypeAndVersioning=[[Fe.prototype._setValue_direct,Fe.prototype._setValue_direct_setNeedsUpdate,Fe.prototype._setValue_direct_setMatrixWorldNeedsUpdate],[Fe.prototype._setValue_array,Fe.prototype._setValue_array_setNeedsUpdate,Fe.prototype._setValue_array_setMatrixWorldNeedsUpdate],[Fe.prototype._setValue_arrayElement,Fe.prototype._setValue_arrayElement_setNeedsUpdate,Fe.prototype._setValue_arrayElement_setMatrixWorldNeedsUpdate],[Fe.prototype._setValue_fromArray,Fe.prototype._setValue_fromArray_setNeedsUpdate,Fe.prototype._setValue_fromArray_setMatrixWorldNeedsUpdate]];var Nb=new Float32Array(1);var fo=class{constructor(t=1,e=0,n=0){return this.radius=t,this.phi=e,this.theta=n,this}set(t,e,n){return this.radius=t,this.phi=e,this.theta=n,this}copy(t){return this.radius=t.radius,this.phi=t.phi,this.theta=t.theta,this}makeSafe(){return this.phi=Math.max(1e-6,Math.min(Math.PI-1e-6,this.phi)),this}setFromVector3(t){return this.setFromCartesianCoords(t.x,t.y,t.z)}setFromCartesianCoords(t,e,n){return this.radius=Math.sqrt(t*t+e*e+n*n),this.radius===0?(this.theta=0,this.phi=0):(this.theta=Math.atan2(t,n),this.phi=Math.acos(dn(e/this.radius,-1,1))),this}clone(){return new this.constructor().copy(this)}};var Ia=class extends Fi{constructor(t,e=null){super(),this.object=t,this.domElement=e,this.enabled=!0,this.state=-1,this.keys={},this.mouseButtons={LEFT:null,MIDDLE:null,RIGHT:null},this.touches={ONE:null,TWO:null}}connect(){}disconnect(){}dispose(){}update(){}};typeof __THREE_DEVTOOLS__<"u"&&__THREE_DEVTOOLS__.dispatchEvent(new CustomEvent("register",{detail:{revision:gh}}));typeof window<"u"&&(window.__THREE__?console.warn("WARNING: Multiple instances of Three.js being imported."):window.__THREE__=gh);var os=[[-1,-1,-1],[1,-1,-1],[1,1,-1],[-1,1,-1],[-1,-1,1],[1,-1,1],[1,1,1],[-1,1,1]],Hy=[[0,1],[1,2],[2,3],[3,0],[4,5],[5,6],[6,7],[7,4],[0,4],[1,5],[2,6],[3,7]],Gy=Hy.map(([i,t])=>[0,1,2].map(e=>(os[i][e]+os[t][e])/2)),Wy=[[0,1],[1,2],[2,0],[0,3],[1,3],[2,3]],Xy=[[0,1],[1,2],[2,0]];function yd(i,t,e,n){for(let s=0;s<8;++s)n[s]=(1+os[s][0]*i)*(1+os[s][1]*t)*(1+os[s][2]*e)/8}function Yy(i,t,e,n){yd(i,t,e,n);for(let r=0;r<8;++r)n[r]*=os[r][0]*i+os[r][1]*t+os[r][2]*e-2;let s=(r,o)=>r===0?1-o*o:1+r*o;for(let r=0;r<12;++r){let[o,a,l]=Gy[r];n[8+r]=s(o,i)*s(a,t)*s(l,e)/4}}function qy(i,t,e,n){[n[0],n[1],n[2],n[3]]=[1-i-t-e,i,t,e]}function $y(i,t,e,n){let s=[1-i-t-e,i,t,e];for(let r=0;r<4;++r)n[r]=s[r]*(2*s[r]-1);Wy.forEach(([r,o],a)=>n[4+a]=4*s[r]*s[o])}function Zy(i,t,e,n){let s=[1-i-t,i,t];for(let r=0;r<6;++r)n[r]=s[r%3]*(r<3?1-e:1+e)/2}function Jy(i,t,e,n){let s=[1-i-t,i,t];for(let r=0;r<6;++r){let o=r<3?-e:e;n[r]=s[r%3]*(1+o)*(2*s[r%3]-2+o)/2}Xy.forEach(([r,o],a)=>{n[6+a]=2*s[r]*s[o]*(1-e),n[9+a]=2*s[r]*s[o]*(1+e)});for(let r=0;r<3;++r)n[12+r]=s[r]*(1-e*e)}function _d(i){let t=[],e=s=>2*s/i-1,n=[[0,1,2],[0,2,1],[1,0,2],[1,2,0],[2,0,1],[2,1,0]];for(let s=0;s<i;++s)for(let r=0;r<i;++r)for(let o=0;o<i;++o)for(let a of n){let l=[o,r,s],c=[l.map(e)];for(let u of a)++l[u],c.push(l.map(e));t.push(c)}return t}function xd(i){let t=[],e=(s,r,o)=>{let a=(l,c)=>[...s[l],c];t.push([a(0,r),a(1,r),a(2,r),a(2,o)],[a(0,r),a(1,r),a(1,o),a(2,o)],[a(0,r),a(0,o),a(1,o),a(2,o)])},n=1/i;for(let s=0;s<i;++s)for(let r=0;r<i;++r)for(let o=0;o+r<i;++o){let[a,l]=[2*s/i-1,2*(s+1)/i-1],[c,u]=[o/i,r/i];e([[c,u],[c+n,u],[c,u+n]],a,l),o+r+1<i&&e([[c+n,u],[c+n,u+n],[c,u+n]],a,l)}return t}function vd(i){let[t,e,n,s]=[[0,0,0],[1,0,0],[0,1,0],[0,0,1]];if(i===1)return[[t,e,n,s]];let r=(h,d)=>h.map((_,x)=>(_+d[x])/2),[o,a,l]=[e,n,s].map(h=>r(t,h)),[c,u,f]=[r(e,n),r(e,s),r(n,s)];return[[t,o,a,l],[o,e,c,u],[a,c,n,f],[l,u,f,s],[o,f,a,l],[o,f,l,u],[o,f,u,c],[o,f,c,a]]}var Ua=[null,{numNodes:8,weigh:yd,divide:_d},{numNodes:6,weigh:Zy,divide:xd},{numNodes:4,weigh:qy,divide:()=>vd(1)},{numNodes:20,weigh:Yy,divide:_d},{numNodes:15,weigh:Jy,divide:xd},{numNodes:10,weigh:$y,divide:vd}],Ky=i=>Ua[i].numNodes;function jy({numNodes:i,weigh:t,divide:e},n){let s=new Map,r=[],o=e(n).map(f=>f.map(h=>{let d=h.join();return s.has(d)||s.set(d,r.push(h)-1),s.get(d)})),a=r.map(f=>{let h=new Float64Array(i);return t(...f,h),h}),l=(f,h)=>f.filter((d,_)=>_!==h).sort((d,_)=>d-_).join(),c=new Map;for(let f of o)for(let h=0;h<4;++h)c.set(l(f,h),(c.get(l(f,h))??0)+1);let u=o.map(f=>f.map((h,d)=>c.get(l(f,d))===1));return{points:r,weights:a,cells:o,areOuter:u}}var Qy=[null,[[0,1,3],[0,2,1],[0,3,2]],[[0,2,1],[0,3,2],[1,3,0],[1,2,3]],[[0,3,2],[1,3,0],[2,3,1]]],Oa=class{constructor(){this.solids=[],this.locals=[]}get length(){return this.solids.length}add(t,[e,n,s]){this.solids.push(t),this.locals.push(e,n,s)}},tM=8e3,Fa=class{constructor({types:t,points:e},n){this.types=t,this.points=e,this.columns=n,this.first=new Uint32Array(t.length+1);for(let s=0;s<t.length;++s)this.first[s+1]=this.first[s]+Ky(t[s]);this.cells=new Map,this.weights=new Float64Array(20),this.clear()}clear(){this.corners=new Oa,this.ends=new Oa}cellsOf(t,e){let n=10*e+t;return this.cells.has(n)||this.cells.set(n,jy(Ua[t],e)),this.cells.get(n)}cut(t,e){this.clear();let n=this.sidesOf(t),s=[];for(let[o,a]of e)for(let l=o;l<o+a;++l)this.isMet(l,n)&&s.push(l);let r=s.length>tM?1:2;for(let o of s)this.cutSolid(o,n,this.cellsOf(this.types[o],r))}sidesOf([t,e,n,s]){let[r,o,a]=this.columns,l=new Float64Array(r.length),[c,u]=[1/0,-1/0];for(let h=0;h<l.length;++h){let d=t*r[h]+e*o[h]+n*a[h]-s;l[h]=d,c=Math.min(c,d),u=Math.max(u,d)}let f=1e-6*(u-c);for(let h=0;h<l.length;++h)Math.abs(l[h])<=f&&(l[h]=0);return l}isMet(t,e){let[n,s]=[!1,!1];for(let r=this.first[t];r<this.first[t+1];++r)e[this.points[r]]<0?n=!0:s=!0;return n&&s}cutSolid(t,e,{points:n,weights:s,cells:r,areOuter:o}){let a=this.first[t],l=Float64Array.from(this.points.subarray(a,this.first[t+1]),d=>e[d]),c=l.reduce((d,_)=>Math.max(d,Math.abs(_)),0),u=s.map(d=>{let _=d.reduce((x,m,p)=>x+m*l[p],0);return Math.abs(_)<=1e-12*c?0:_}),f=new Map,h=(d,_)=>{let x=d*n.length+_;return f.has(x)||f.set(x,this.meet(t,l,c,[n[d],u[d]],[n[_],u[_]])),f.get(x)};r.forEach((d,_)=>{let x=b=>u[d[b]]<0,m=x(0)+x(1)+x(2)+x(3);if(m===0||m===4)return;let p=[0,1,2,3].sort((b,D)=>x(D)-x(b)),T=Qy[m],w=T.map(([b,D])=>h(d[p[b]],d[p[D]]));for(let b=2;b<w.length;++b)for(let D of[w[0],w[b-1],w[b]])this.corners.add(t,D);T.forEach(([,,b],D)=>{o[_][p[b]]&&(this.ends.add(t,w[D]),this.ends.add(t,w[(D+1)%w.length]))})})}meet(t,e,n,[s,r],[o,a]){let[l,c]=[0,1],[u,f]=[r,a],h=s;for(let d=0;d<8;++d){let _=l+(c-l)*u/(u-f);h=s.map((m,p)=>m+_*(o[p]-m)),Ua[this.types[t]].weigh(...h,this.weights);let x=0;for(let m=0;m<e.length;++m)x+=this.weights[m]*e[m];if(Math.abs(x)<=1e-9*n)break;x<0?[l,u]=[_,x]:[c,f]=[_,x]}return h}at(t,[e,n,s],r){Ua[this.types[t]].weigh(e,n,s,this.weights);let o=this.first[t],a=this.first[t+1]-o;return r.map(l=>{let c=0;for(let u=0;u<a;++u)this.weights[u]!==0&&(c+=this.weights[u]*l[this.points[o+u]]);return c})}interpolate({solids:t,locals:e},n){let s=new Float32Array(t.length*n.length);for(let r=0;r<t.length;++r)s.set(this.at(t[r],[e[3*r],e[3*r+1],e[3*r+2]],n),n.length*r);return s}placeIn(t,e,n){let{solids:s,locals:r}=this.corners,o=[1-e-n,e,n],a=[0,1,2].map(l=>o.reduce((c,u,f)=>c+u*r[9*t+3*f+l],0));return{solid:s[3*t],local:a}}};var eM=Math.cos(Math.PI/6),Ah=6,bd=1e9,Ba=class i{static async load(t,e){let n=new i,s=["ids","triangles","triangleElements","edges","beams","beamElements","elementIds"];await Promise.all(s.map(async l=>n[l]=await t.integers(e.blobs[l])));let[r,o,a]=await t.values(e.blobs.points,3,32);return n.numPoints=r.length,n.columns=[r,o,a],n.points=Md(n.columns),n.origin=e.origin,n.parts=e.parts,n.materials=e.materials,n.sets=e.sets,n.leavesOutSets=e.leavesOutSets,n.nodeSets=e.nodeSets,n.setNodes=()=>n.nodesOfSets??=t.integers(e.blobs.setNodes),n.shown=e.parts.map(()=>!0),n.seesInside=!1,n.hasSolids=e.parts.some(l=>l.solids[1]>0),n.measure(),n.makeCorners(),n}async loadInside(t,e){let n=["ids","elementIds","solidTypes","solidElements","solidPoints"],[s,r,o,a,l,c]=await Promise.all([t.values(e.blobs.points,3,32),...n.map(u=>t.integers(e.blobs[u]))]);this.columns=this.columns.map((u,f)=>$r(u,s[f])),this.points=Md(this.columns),this.ids=$r(this.ids,r),this.elementIds=$r(this.elementIds,o),this.solidElements=l,this.section=new Fa({types:a,points:c},this.columns)}cut(t){t?this.section?.cut(t,this.parts.filter((e,n)=>this.shown[n]).map(e=>e.solids)):this.section?.clear()}measure(){this.least=[1/0,1/0,1/0],this.greatest=[-1/0,-1/0,-1/0];for(let t=0;t<this.points.length;++t)this.least[t%3]=Math.min(this.least[t%3],this.points[t]),this.greatest[t%3]=Math.max(this.greatest[t%3],this.points[t]);this.size=Math.hypot(...this.greatest.map((t,e)=>t-this.least[e]))||1}makeCorners(){let t=this.triangleElements.length,e=6*Ah,n=3*t+e*this.beamElements.length;this.cornerPoints=new Uint32Array(n),this.cornerElements=new Uint32Array(n),this.cornerPlaces=new Float32Array(3*n),this.cornerPoints.set(this.triangles);for(let s=0;s<t;++s)this.cornerElements.fill(this.triangleElements[s],3*s,3*s+3);this.radius=this.size/250;for(let s=0;s<this.beamElements.length;++s)this.makePrism(s,3*t+e*s);for(let s=0;s<3*t;++s)this.cornerPlaces.set(this.points.subarray(3*this.cornerPoints[s],3*this.cornerPoints[s]+3),3*s);this.numTriangles=t,this.perBeam=e,this.positions=new Be(this.cornerPlaces,3)}pointAt(t){return Array.from(this.points.subarray(3*t,3*t+3))}makePrism(t,e){let n=[this.beams[2*t],this.beams[2*t+1]],[s,r]=n.map(h=>this.pointAt(h)),o=r.map((h,d)=>h-s[d]),a=Math.abs(o[2])<.9*Math.hypot(...o)?[0,0,1]:[1,0,0],l=Rh(Ch(o,a)),c=Rh(Ch(o,l)),u=(h,d)=>{let _=2*Math.PI*d/Ah;return(h?r:s).map((x,m)=>x+this.radius*(Math.cos(_)*l[m]+Math.sin(_)*c[m]))},f=e;for(let h=0;h<Ah;++h)for(let[d,_]of[[0,0],[0,1],[1,1],[0,0],[1,1],[1,0]])this.cornerPoints[f]=n[d],this.cornerElements[f]=this.beamElements[t],this.cornerPlaces.set(u(d,h+_),3*f),++f}outline(){if(this.outlineEdges)return this.outlineEdges;let t=[],e=[];for(let n of this.parts){let s=new Map,[r,o]=n.triangles;for(let l=r;l<r+o;++l){let c=this.triangles.subarray(3*l,3*l+3),u=this.normalOf(c);for(let f=0;f<3;++f){let h=Sd(c[f],c[(f+1)%3],this.numPoints),d=s.get(h);d?d.push(u):s.set(h,[u])}}let a=t.length/2;for(let l=n.edges[0];l<n.edges[0]+n.edges[1];++l){let[c,u]=[this.edges[2*l],this.edges[2*l+1]],f=s.get(Sd(c,u,this.numPoints))??[];f.length===2&&Pr(f[0],f[1])>eM||t.push(c,u)}e.push([a,t.length/2-a])}return this.outlineEdges={edges:Uint32Array.from(t),rows:e},this.outlineEdges}normalOf([t,e,n]){let s=this.points,r=(o,a)=>[0,1,2].map(l=>s[3*a+l]-s[3*o+l]);return Rh(Ch(r(t,e),r(t,n)))}show(t){this.shown=this.parts.map(t)}setGroups(t){t.clearGroups(),this.addGroups(t,this.parts.map(e=>e.triangles),0,3),this.addGroups(t,this.parts.map(e=>e.beams),3*this.numTriangles,this.perBeam)}setLineGroups(t,e){t.clearGroups(),this.addGroups(t,e,0,2)}addGroups(t,e,n,s){let[r,o]=[0,0],a=()=>{o&&t.addGroup(n+s*r,s*o,0)};e.forEach(([l,c],u)=>{if(!(!this.shown[u]||!c)){if(l===r+o){o+=c;return}a(),[r,o]=[l,c]}}),a()}makeFaceGeometry(){let t=new cn;return t.setAttribute("position",this.positions),t.setAttribute("displacement",new Be(new Float32Array(this.cornerPlaces.length),3)),t.setAttribute("place",new Be(new Float32Array(this.cornerPoints.length),1)),this.setGroups(t),t}makePointGeometry(t){let e=new cn,n=new Float32Array(3*t.length);for(let s=0;s<t.length;++s)n.set(this.points.subarray(3*t[s],3*t[s]+3),3*s);return e.setAttribute("position",new Be(n,3)),e.setAttribute("displacement",new Be(new Float32Array(n.length),3)),e}setDisplacements(t,e,n){let s=t.getAttribute("displacement"),r=s.array;if(!n)r.fill(0);else for(let o=0;o<e.length;++o)for(let a=0;a<3;++a)r[3*o+a]=n[a][e[o]]||0;s.needsUpdate=!0}setPlaces(t,e,n,s){let r=e?this.cornerElements:this.cornerPoints,o=t.getAttribute("place"),a=Ph(n??[],s);for(let l=0;l<r.length;++l)o.array[l]=n?a[r[l]]:bd;o.needsUpdate=!0}deformed(t,e){if(!t||e===0)return this.points;let n=new Float32Array(this.points);for(let s=0;s<t[0].length;++s)for(let r=0;r<3;++r)n[3*s+r]+=e*(t[r][s]||0);return n}visible(){if(this.visibleOf===this.shown&&this.visibleInside===this.seesInside)return this.visibleRows;let t=new Uint8Array(this.points.length/3),e=new Uint8Array(this.elementIds.length);return this.parts.forEach((n,s)=>{if(!this.shown[s])return;let[r,o]=n.triangles;for(let a=r;a<r+o;++a){e[this.triangleElements[a]]=1;for(let l=0;l<3;++l)t[this.triangles[3*a+l]]=1}for(let a=n.beams[0];a<n.beams[0]+n.beams[1];++a)e[this.beamElements[a]]=1,t[this.beams[2*a]]=t[this.beams[2*a+1]]=1;this.seesInside&&this.markSolids(n,t,e)}),this.visibleOf=this.shown,this.visibleInside=this.seesInside,this.visibleRows={points:t,elements:e},this.visibleRows}markSolids({solids:[t,e]},n,s){let{section:r}=this;for(let o=t;o<t+e;++o)s[this.solidElements[o]]=1;for(let o=r.first[t];o<r.first[t+e];++o)n[r.points[o]]=1}findNode(t){return this.ids.indexOf(t)}pointsInside(t){let e=this.solidElements.indexOf(t);return this.section.points.subarray(this.section.first[e],this.section.first[e+1])}middleOf(t,e){let n=[0,0,0,0],s=r=>{for(let o=0;o<3;++o)n[o]+=e[3*r+o];++n[3]};for(let r=0;r<this.numTriangles;++r)this.triangleElements[r]===t&&this.triangles.subarray(3*r,3*r+3).forEach(s);for(let r=0;r<this.beamElements.length;++r)this.beamElements[r]===t&&this.beams.subarray(2*r,2*r+2).forEach(s);return n[3]===0&&this.pointsInside(t).forEach(s),n.slice(0,3).map(r=>r/n[3])}pick(t,e,n,s){let r=null,o=1/0;this.parts.forEach((u,f)=>{if(this.shown[f])for(let h=u.triangles[0];h<u.triangles[0]+u.triangles[1];++h){let d=Ih(this.triangles,3*h,t,e,n,o);!d||s&&this.isCutOff(h,d,s)||(o=d.distance,r={t:h,...d})}});let a=this.pickBeam(t,e,n,s,o);if(a)return a;if(!r)return null;let l=[1-r.u-r.v,r.u,r.v],c=l.indexOf(Math.max(...l));return{distance:o,element:this.triangleElements[r.t],point:this.triangles[3*r.t+c]}}placeOnCut({triangle:t,u:e,v:n}){let{section:s}=this,r=s.placeIn(t,e,n),o=s.at(r.solid,r.local,this.columns),a=this.solidElements[r.solid],l=u=>Math.hypot(...this.pointAt(u).map((f,h)=>f-o[h])),c=this.pointsInside(a).reduce((u,f)=>l(f)<l(u)?f:u);return{element:a,point:c,on:r,rest:o}}isCutOff(t,{u:e,v:n},[s,r,o,a]){let l=[1-e-n,e,n],c=-a;for(let u=0;u<3;++u){let f=3*this.triangles[3*t+u];c+=l[u]*(s*this.points[f]+r*this.points[f+1]+o*this.points[f+2])}return c>0}pickBeam(t,e,n,s,r){let o=null;return this.parts.forEach((a,l)=>{if(this.shown[l])for(let c=a.beams[0];c<a.beams[0]+a.beams[1];++c){let u=[this.beams[2*c],this.beams[2*c+1]],[f,h]=u.map(p=>[n[3*p],n[3*p+1],n[3*p+2]]),{distance:d,apart:_,along:x}=nM(t,e,f,h);if(_>1.5*this.radius||d-this.radius>=r)continue;let m=u[x<.5?0:1];s&&Pr(s,this.pointAt(m))>s[3]||(r=d-this.radius,o={distance:r,element:this.beamElements[c],point:m})}}),o}};function Md([i,t,e]){let n=new Float32Array(3*i.length);for(let s=0;s<i.length;++s)n[3*s]=i[s],n[3*s+1]=t[s],n[3*s+2]=e[s];return n}var Ch=(i,t)=>[i[1]*t[2]-i[2]*t[1],i[2]*t[0]-i[0]*t[2],i[0]*t[1]-i[1]*t[0]],Pr=(i,t)=>i[0]*t[0]+i[1]*t[1]+i[2]*t[2],Rh=i=>{let t=Math.hypot(...i)||1;return i.map(e=>e/t)},Sd=(i,t,e)=>i<t?i*e+t:t*e+i;function nM(i,t,e,n){let s=n.map((_,x)=>_-e[x]),r=e.map((_,x)=>_-i[x]),[o,a,l,c]=[Pr(t,s),Pr(s,s),Pr(t,r),Pr(s,r)],u=a-o*o,f=Math.max(0,Math.min(1,u>1e-12*a?(o*l-c)/u:0)),h=l+f*o,d=Math.hypot(...e.map((_,x)=>_+f*s[x]-i[x]-h*t[x]));return{distance:h,apart:d,along:f}}function Ph(i,t){return Float32Array.from(i,e=>{let n=t(e);return Number.isFinite(n)?Math.max(-1e3,Math.min(1e3,n)):bd})}function Ih(i,t,e,n,s,r){let o=3*(i?i[t]:t),a=3*(i?i[t+1]:t+1),l=3*(i?i[t+2]:t+2),c=s[a]-s[o],u=s[a+1]-s[o+1],f=s[a+2]-s[o+2],h=s[l]-s[o],d=s[l+1]-s[o+1],_=s[l+2]-s[o+2],x=n[1]*_-n[2]*d,m=n[2]*h-n[0]*_,p=n[0]*d-n[1]*h,T=c*x+u*m+f*p;if(T===0)return null;let w=e[0]-s[o],b=e[1]-s[o+1],D=e[2]-s[o+2],L=(w*x+b*m+D*p)/T;if(!(L>=0&&L<=1))return null;let I=b*f-D*u,N=D*c-w*f,E=w*u-b*c,M=(n[0]*I+n[1]*N+n[2]*E)/T;if(!(M>=0&&L+M<=1))return null;let C=(h*I+d*N+_*E)/T;return C<r?{distance:C,u:L,v:M}:null}var iM=`440154 470d60 48186a 482374 472d7b 453781 424086 3e4989 3b528b 375b8d 33638d 2f6b8e 2c728e 297a8e 26828e
23898e 21918c 1f988b 1fa088 22a785 28ae80 32b67a 3fbc73 4ec36b 5ec962 70cf57 84d44b 98d83e addc30 c2df23 d8e219 ece51b
fde725`,sM=`3b4cc0 445acc 4e68d7 5875e1 6282ea 6c8ef1 779af7 82a5fb 8db0fe 98b9ff a3c2ff aec9fd b8d0f9 c2d5f4
ccd9ee d5dbe6 dddddd e5d8d1 ecd3c6 f1ccb9 f5c4ad f7bba0 f7b194 f7a687 f49a7b f18d6f ec7f63 e57057 de614c d55042 cb3e38
c0282f b40426`,wd=i=>i.split(/\s+/).map(t=>[0,2,4].map(e=>parseInt(t.slice(e,e+2),16))),rM={viridis:wd(iM),coolwarm:wd(sM)};function Ed(i,t){let e=rM[i],n=Math.max(0,Math.min(1,t))*(e.length-1);if(i==="viridis"){let r=Math.max(0,Math.min(1,t))*255;n=r<=248?r/8:31+(r-248)/7}let s=Math.min(Math.floor(n),e.length-2);return[0,1,2].map(r=>e[s][r]+(e[s+1][r]-e[s][r])*(n-s))}var ka=class{constructor([t,e]){this.range=[t,e];let[n,s]=[-t,e],r=Math.min(n,s)>0&&Math.min(n,s)>=.05*Math.max(n,s);this.map=r?"coolwarm":"viridis";let o=Math.max(Math.abs(t),Math.abs(e));this.first=r?-o:t,this.length=r?2*o:e-t}positionOf(t){return this.length>0?(Math.max(this.range[0],Math.min(this.range[1],t))-this.first)/this.length:.5}table(t){let e=new Uint8Array(4*t);for(let n=0;n<t;++n)e.set([...Ed(this.map,n/(t-1)),255],4*n);return e}css(t){return`rgb(${Ed(this.map,this.positionOf(t)).map(Math.round).join(" ")})`}};function Td([i,t],e){let n=t-i;if(!(n>0))return[i];let s=n/e,r=10**Math.floor(Math.log10(s)),o=r*([1,2,5,10].find(l=>l*r>=s*(1-1e-12))??10),a=[];for(let l=Math.ceil(i/o-1e-9);l*o<=t+1e-9*n;++l)a.push(l*o);return a}function Ye(i){if(typeof i=="string")return i;if(!Number.isFinite(i))return Number.isNaN(i)?"nan":i>0?"inf":"-inf";if(i===0)return"0";let t=Math.abs(i);if(t>=1e6||t<1e-4){let[e,n]=i.toExponential(5).split("e");return`${e.includes(".")?e.replace(/\.?0+$/,""):e}e${Number(n)}`}return String(Number(i.toPrecision(6)))}function oM(i){let t=["B","KiB","MiB","GiB","TiB"],e=0;for(;i>=1024&&e+1<t.length;++e)i/=1024;return`${e?i.toPrecision(i<10?2:3):i} ${t[e]}`}function Us(i,t,...e){return rt("section",{id:i,"aria-labelledby":`${i}-title`},rt("h2",{id:`${i}-title`},t),...e)}function Ad({overview:i}){let t=i.elements.map(({type:n,count:s})=>`${s} ${n}`).join(", "),e=(n,s)=>`${n} ${s}${n===1?"":"s"}`;return[e(i.nodes,"node"),t,e(i.steps,"step")].filter(Boolean).join(" \xB7 ")}function Cd(i){return i.length?Ei("Our nodal averages less the solver\u2019s, as a fraction of the largest magnitude",["kind","step","largest deviation"],i.map(({kind:t,step:e,deviation:n})=>[t,e,Ye(n)])):rt("p",{},"The solver printed no averages of its own to compare with.")}function Rd({results:i,reason:t},e){if(t)return rt("p",{},`Not judged: ${t}.`);let n=i.map(s=>[s.step,s.holds===void 0?"\u2013":s.holds?"holds":"FAILS",s.verdict,rt("span",{},...(s.worst??[]).slice(0,3).map(({node:r,residual:o})=>rt("button.link",{type:"button",onclick:()=>e(r)},`node ${r} (${Ye(o)})`)))]);return Ei("Element nodal forces against what the solver says acts on each node",["step","balance","verdict","worst nodes"],n)}function Dh(i){return i.length?rt("div",{},...i.flatMap(({iteration:t,files:e,settings:n})=>[Ei(`Files of iteration ${t}`,["role","file","bytes","checksum (XXH3)","changed"],e.map(s=>[s.role,s.name,s.bytes,rt("code",{},s.checksum),s.changed])),rt("p",{},n.map(({name:s,value:r})=>`${s}: ${r}`).join(" \xB7 "))])):rt("p",{},"The database does not keep what it was imported from.")}var Lh=400;function Pd(i){let t=rt("div"),e=rt("p",{role:"status"}),n=r=>{let o=r.toLowerCase().split(/\s+/).filter(Boolean),a=i.filter(({onf:l,kind:c,step:u})=>{let f=`${l} ${c} ${u}`.toLowerCase();return o.every(h=>f.includes(h))});e.textContent=`${a.length} of ${i.length} blocks`+(a.length>Lh?`, the first ${Lh} are listed`:""),In(t,Ei("Blocks",["onf","kind","step","records","size","least","greatest","nan"],a.slice(0,Lh).map(l=>[l.onf,l.kind,l.step,l.records,oM(l.bytes),l.least===null?"":Ye(l.least),l.greatest===null?"":Ye(l.greatest),l.nan])))},s=rt("input",{type:"search",id:"block-filter",oninput:()=>n(s.value)});return n(""),rt("div",{},rt("div.control",{},rt("label",{for:"block-filter"},"Filter by kind or step"),s),e,t)}var aM=8,za=["#d0006f","#111111","#0a7d00","#8a2be2","#b34700","#00708c","#7a0010","#444cff"],lM=i=>[1,3,5].map(t=>parseInt(i.slice(t,t+2),16)/255),Va=class{constructor(t,{onparts:e,onnodes:n}){this.model=t,this.onparts=e,this.onnodes=n,this.hidden={materials:new Set,sets:new Set},this.alone=null,this.marked=new Set,this.lists=rt("div"),this.place=rt("div",{},...this.makeFilter(),this.lists,this.makeButtons()),this.fill()}makeFilter(){let{materials:t,sets:e,nodeSets:n,leavesOutSets:s}=this.model,r=s?[rt("p.hint",{},"Element sets cut the model into more than 1000 parts: materials alone are listed.")]:[];return t.length+e.length+n.length<=aM?r:(this.filter=rt("input",{type:"search",oninput:()=>this.fill()}),this.count=rt("p.hint",{role:"status"}),[...r,_i("Filter parts and sets by name",this.filter),this.count])}makeButtons(){let t=(n,s)=>rt("button",{type:"button",onclick:s},n),e=this.filter===void 0?[]:[t("Show listed",()=>this.switchListed(!0)),t("Hide listed",()=>this.switchListed(!1))];return rt("div.row",{},t("Show all",()=>this.showAll()),...e)}fill(){let t=(this.filter?.value??"").toLowerCase().split(/\s+/).filter(Boolean),e=l=>t.every(c=>l.toLowerCase().includes(c)),n=l=>l.map((c,u)=>({name:c,index:u})).filter(({name:c})=>e(c)),{materials:s,sets:r,nodeSets:o}=this.model;this.listed={materials:n(s),sets:n(r)};let a=n(o.map(({name:l})=>l));if(In(this.lists,...this.group("Materials",this.listed.materials,l=>this.makePart("materials",l)),...this.group("Element sets",this.listed.sets,l=>this.makePart("sets",l)),...this.group("Node sets",a,l=>this.makeNodeSet(l))),this.count){let l=s.length+r.length+o.length;this.count.textContent=`${this.listed.materials.length+this.listed.sets.length+a.length} of ${l} names`}}group(t,e,n){return e.length?[rt("fieldset",{},rt("legend",{},t),...e.map(n))]:[]}makePart(t,{name:e,index:n}){let s=vl(e,this.isOn(t,n),r=>{this.switch(t,n,r),this.apply()});return s.append(rt("button.link",{type:"button","aria-label":`only ${e}`,onclick:()=>this.only(t,n)},"only")),s}makeNodeSet({name:t,index:e}){let{nodes:n,points:[,s]}=this.model.nodeSets[e],r=`${n} node${n===1?"":"s"}${s?"":", all inside"}`,o=vl(`${t} (${r})`,this.marked.has(e),l=>{this.marked[l?"add":"delete"](e),this.onnodes()}),a=rt("span.swatch",{"aria-hidden":"true"});return a.style.background=za[e%za.length],o.append(a),o}shownNodeSets(){return[...this.marked].map(t=>({points:this.model.nodeSets[t].points,ink:lM(za[t%za.length])}))}isOn(t,e){return!this.hidden[t].has(e)&&(this.alone?.kind!==t||this.alone.indices.has(e))}switch(t,e,n){this.hidden[t][n?"delete":"add"](e),this.alone?.kind===t&&n&&this.alone.indices.add(e)}switchListed(t){for(let[e,n]of Object.entries(this.listed))for(let{index:s}of n)this.switch(e,s,t);this.fill(),this.apply()}showAll(){this.hidden={materials:new Set,sets:new Set},this.alone=null,this.fill(),this.apply()}only(t,e){this.hidden={materials:new Set,sets:new Set},this.alone={kind:t,indices:new Set([e])},this.fill(),this.apply()}apply(){let{materials:t,sets:e}=this.hidden;this.model.show(n=>{if(t.has(n.material)||n.sets.some(o=>e.has(o)))return!1;if(!this.alone)return!0;let{kind:s,indices:r}=this.alone;return s==="materials"?r.has(n.material):n.sets.some(o=>r.has(o))}),this.onparts()}};var Qe="u-",hM="uplot",uM=Qe+"hz",fM=Qe+"vt",dM=Qe+"title",pM=Qe+"wrap",mM=Qe+"under",gM=Qe+"over",_M=Qe+"axis",Bs=Qe+"off",xM=Qe+"select",vM=Qe+"cursor-x",yM=Qe+"cursor-y",MM=Qe+"cursor-pt",SM=Qe+"legend",bM=Qe+"live",wM=Qe+"inline",EM=Qe+"series",TM=Qe+"marker",Id=Qe+"label",AM=Qe+"value",_o="width",xo="height",mo="top",Ld="bottom",Ir="left",Nh="right",Jh="#000",Dd=Jh+"0",Nd="mousemove",Ud="mousedown",Uh="mouseup",Od="mouseenter",Fd="mouseleave",Bd="dblclick",CM="resize",RM="scroll",kd="change",Ya="dppxchange",Kh="--",kr=typeof window<"u",zh=kr?document:null,Dr=kr?window:null,PM=kr?navigator:null,_e,Ha;function Vh(){let i=devicePixelRatio;_e!=i&&(_e=i,Ha&&Gh(kd,Ha,Vh),Ha=matchMedia(`(min-resolution: ${_e-.001}dppx) and (max-resolution: ${_e+.001}dppx)`),ks(kd,Ha,Vh),Dr.dispatchEvent(new CustomEvent(Ya)))}function Bn(i,t){if(t!=null){let e=i.classList;!e.contains(t)&&e.add(t)}}function Hh(i,t){let e=i.classList;e.contains(t)&&e.remove(t)}function Ne(i,t,e){i.style[t]=e+"px"}function ci(i,t,e,n){let s=zh.createElement(i);return t!=null&&Bn(s,t),e?.insertBefore(s,n),s}function $n(i,t){return ci("div",i,t)}var zd=new WeakMap;function vi(i,t,e,n,s){let r="translate("+t+"px,"+e+"px)",o=zd.get(i);r!=o&&(i.style.transform=r,zd.set(i,r),t<0||e<0||t>n||e>s?Bn(i,Bs):Hh(i,Bs))}var Vd=new WeakMap;function Hd(i,t,e){let n=t+e,s=Vd.get(i);n!=s&&(Vd.set(i,n),i.style.background=t,i.style.borderColor=e)}var Gd=new WeakMap;function Wd(i,t,e,n){let s=t+""+e,r=Gd.get(i);s!=r&&(Gd.set(i,s),i.style.height=e+"px",i.style.width=t+"px",i.style.marginLeft=n?-t/2+"px":0,i.style.marginTop=n?-e/2+"px":0)}var jh={passive:!0},IM={...jh,capture:!0};function ks(i,t,e,n){t.addEventListener(i,e,n?IM:jh)}function Gh(i,t,e,n){t.removeEventListener(i,e,jh)}kr&&Vh();function hi(i,t,e,n){let s;e=e||0,n=n||t.length-1;let r=n<=2147483647;for(;n-e>1;)s=r?e+n>>1:kn((e+n)/2),t[s]<i?e=s:n=s;return i-t[e]<=t[n]-i?e:n}function Nr(i,t,e,n){for(let s=n==1?t:e;s>=t&&s<=e;s+=n)if(i[s]!=null)return s;return-1}function LM(i,t,e,n){let s=ce,r=-ce;if(n==1)s=i[t],r=i[e];else if(n==-1)s=i[e],r=i[t];else for(let o=t;o<=e;o++){let a=i[o];a!=null&&(a<s&&(s=a),a>r&&(r=a))}return[s,r]}function DM(i,t,e){let n=ce,s=-ce;for(let r=t;r<=e;r++){let o=i[r];o!=null&&o>0&&(o<n&&(n=o),o>s&&(s=o))}return[n,s]}function Za(i,t,e,n){let s=qd(i),r=qd(t);i==t&&(s==-1?(i*=e,t/=e):(i/=e,t*=e));let o=e==10?zi:xp,a=s==1?kn:Zn,l=r==1?Zn:kn,c=a(o(je(i))),u=l(o(je(t))),f=Ur(e,c),h=Ur(e,u);return e==10&&(c<0&&(f=Re(f,-c)),u<0&&(h=Re(h,-u))),n||e==2?(i=f*s,t=h*r):(i=Mp(i,f),t=Ja(t,h)),[i,t]}function Qh(i,t,e,n){let s=Za(i,t,e,n);return i==0&&(s[0]=0),t==0&&(s[1]=0),s}var tu=.1,Xd={mode:3,pad:tu},yo={pad:0,soft:null,mode:0},NM={min:yo,max:yo};function qa(i,t,e,n){return Ka(e)?Yd(i,t,e):(yo.pad=e,yo.soft=n?0:null,yo.mode=n?3:0,Yd(i,t,NM))}function me(i,t){return i??t}function UM(i,t,e){for(t=me(t,0),e=me(e,i.length-1);t<=e;){if(i[t]!=null)return!0;t++}return!1}function Yd(i,t,e){let n=e.min,s=e.max,r=me(n.pad,0),o=me(s.pad,0),a=me(n.hard,-ce),l=me(s.hard,ce),c=me(n.soft,ce),u=me(s.soft,-ce),f=me(n.mode,0),h=me(s.mode,0),d=t-i,_=zi(d),x=pn(je(i),je(t)),m=zi(x),p=je(m-_);(d<1e-24||p>10)&&(d=0,(i==0||t==0)&&(d=1e-24,f==2&&c!=ce&&(r=0),h==2&&u!=-ce&&(o=0)));let T=d||x||1e3,w=zi(T),b=Ur(10,kn(w)),D=T*(d==0?i==0?.1:1:r),L=Re(Mp(i-D,b/10),24),I=i>=c&&(f==1||f==3&&L<=c||f==2&&L>=c)?c:ce,N=pn(a,L<I&&i>=I?I:Jn(I,L)),E=T*(d==0?t==0?.1:1:o),M=Re(Ja(t+E,b/10),24),C=t<=u&&(h==1||h==3&&M>=u||h==2&&M<=u)?u:-ce,W=Jn(l,M>C&&t<=C?C:pn(C,M));return N==W&&N==0&&(W=100),[N,W]}var OM=new Intl.NumberFormat(kr?PM.language:"en-US"),eu=i=>OM.format(i),zn=Math,Xa=zn.PI,je=zn.abs,kn=zn.floor,Ke=zn.round,Zn=zn.ceil,Jn=zn.min,pn=zn.max,Ur=zn.pow,qd=zn.sign,zi=zn.log10,xp=zn.log2,FM=(i,t=1)=>zn.sinh(i)*t,Oh=(i,t=1)=>zn.asinh(i/t),ce=1/0;function $d(i){return(zi((i^i>>31)-(i>>31))|0)+1}function Wh(i,t,e){return Jn(pn(i,t),e)}function le(i){return typeof i=="function"?i:()=>i}var BM=()=>{},vp=i=>i,yp=(i,t)=>t,kM=i=>null,Zd=i=>!0,Jd=(i,t)=>i==t,zM=/\.\d*?(?=9{6,}|0{6,})/gm,zs=i=>{if(bp(i)||ls.has(i))return i;let t=`${i}`,e=t.match(zM);if(e==null)return i;let n=e[0].length-1;if(t.indexOf("e-")!=-1){let[s,r]=t.split("e");return+`${zs(s)}e${r}`}return Re(i,n)};function Os(i,t){return zs(Re(zs(i/t))*t)}function Ja(i,t){return zs(Zn(zs(i/t))*t)}function Mp(i,t){return zs(kn(zs(i/t))*t)}function Re(i,t=0){if(bp(i))return i;let e=10**t,n=i*e*(1+Number.EPSILON);return Ke(n)/e}var ls=new Map;function Sp(i){return((""+i).split(".")[1]||"").length}function So(i,t,e,n){let s=[],r=n.map(Sp);for(let o=t;o<e;o++){let a=je(o),l=Re(Ur(i,o),a);for(let c=0;c<n.length;c++){let u=i==10?+`${n[c]}e${o}`:n[c]*l,f=(o>=0?0:a)+(o>=r[c]?0:r[c]),h=i==10?u:Re(u,f);s.push(h),ls.set(h,f)}}return s}var Mo={},nu=[],Or=[null,null],as=Array.isArray,bp=Number.isInteger,VM=i=>i===void 0;function Kd(i){return typeof i=="string"}function Ka(i){let t=!1;if(i!=null){let e=i.constructor;t=e==null||e==Object}return t}function HM(i){return i!=null&&typeof i=="object"}var GM=Object.getPrototypeOf(Uint8Array),wp="__proto__";function Fr(i,t=Ka){let e;if(as(i)){let n=i.find(s=>s!=null);if(as(n)||t(n)){e=Array(i.length);for(let s=0;s<i.length;s++)e[s]=Fr(i[s],t)}else e=i.slice()}else if(i instanceof GM)e=i.slice();else if(t(i)){e={};for(let n in i)n!=wp&&(e[n]=Fr(i[n],t))}else e=i;return e}function qe(i){let t=arguments;for(let e=1;e<t.length;e++){let n=t[e];for(let s in n)s!=wp&&(Ka(i[s])?qe(i[s],Fr(n[s])):i[s]=Fr(n[s]))}return i}var WM=0,XM=1,YM=2;function qM(i,t,e){for(let n=0,s,r=-1;n<t.length;n++){let o=t[n];if(o>r){for(s=o-1;s>=0&&i[s]==null;)i[s--]=null;for(s=o+1;s<e&&i[s]==null;)i[r=s++]=null}}}function $M(i,t){if(KM(i)){let o=i[0].slice();for(let a=1;a<i.length;a++)o.push(...i[a].slice(1));return jM(o[0])||(o=JM(o)),o}let e=new Set;for(let o=0;o<i.length;o++){let l=i[o][0],c=l.length;for(let u=0;u<c;u++)e.add(l[u])}let n=[Array.from(e).sort((o,a)=>o-a)],s=n[0].length,r=new Map;for(let o=0;o<s;o++)r.set(n[0][o],o);for(let o=0;o<i.length;o++){let a=i[o],l=a[0];for(let c=1;c<a.length;c++){let u=a[c],f=Array(s).fill(void 0),h=t?t[o][c]:XM,d=[];for(let _=0;_<u.length;_++){let x=u[_],m=r.get(l[_]);x===null?h!=WM&&(f[m]=x,h==YM&&d.push(m)):f[m]=x}qM(f,d,s),n.push(f)}}return n}var ZM=typeof queueMicrotask>"u"?i=>Promise.resolve().then(i):queueMicrotask;function JM(i){let t=i[0],e=t.length,n=Array(e);for(let r=0;r<n.length;r++)n[r]=r;n.sort((r,o)=>t[r]-t[o]);let s=[];for(let r=0;r<i.length;r++){let o=i[r],a=Array(e);for(let l=0;l<e;l++)a[l]=o[n[l]];s.push(a)}return s}function KM(i){let t=i[0][0],e=t.length;for(let n=1;n<i.length;n++){let s=i[n][0];if(s.length!=e)return!1;if(s!=t){for(let r=0;r<e;r++)if(s[r]!=t[r])return!1}}return!0}function jM(i,t=100){let e=i.length;if(e<=1)return!0;let n=0,s=e-1;for(;n<=s&&i[n]==null;)n++;for(;s>=n&&i[s]==null;)s--;if(s<=n)return!0;let r=pn(1,kn((s-n+1)/t));for(let o=i[n],a=n+r;a<=s;a+=r){let l=i[a];if(l!=null){if(l<=o)return!1;o=l}}return!0}var Ep=["January","February","March","April","May","June","July","August","September","October","November","December"],Tp=["Sunday","Monday","Tuesday","Wednesday","Thursday","Friday","Saturday"];function Ap(i){return i.slice(0,3)}var QM=Tp.map(Ap),tS=Ep.map(Ap),eS={MMMM:Ep,MMM:tS,WWWW:Tp,WWW:QM};function go(i){return(i<10?"0":"")+i}function nS(i){return(i<10?"00":i<100?"0":"")+i}var iS={YYYY:i=>i.getFullYear(),YY:i=>(i.getFullYear()+"").slice(2),MMMM:(i,t)=>t.MMMM[i.getMonth()],MMM:(i,t)=>t.MMM[i.getMonth()],MM:i=>go(i.getMonth()+1),M:i=>i.getMonth()+1,DD:i=>go(i.getDate()),D:i=>i.getDate(),WWWW:(i,t)=>t.WWWW[i.getDay()],WWW:(i,t)=>t.WWW[i.getDay()],HH:i=>go(i.getHours()),H:i=>i.getHours(),h:i=>{let t=i.getHours();return t==0?12:t>12?t-12:t},AA:i=>i.getHours()>=12?"PM":"AM",aa:i=>i.getHours()>=12?"pm":"am",a:i=>i.getHours()>=12?"p":"a",mm:i=>go(i.getMinutes()),m:i=>i.getMinutes(),ss:i=>go(i.getSeconds()),s:i=>i.getSeconds(),fff:i=>nS(i.getMilliseconds())};function iu(i,t){t=t||eS;let e=[],n=/\{([a-z]+)\}|[^{]+/gi,s;for(;s=n.exec(i);)e.push(s[0][0]=="{"?iS[s[1]]:s[0]);return r=>{let o="";for(let a=0;a<e.length;a++)o+=typeof e[a]=="string"?e[a]:e[a](r,t);return o}}var sS=new Intl.DateTimeFormat().resolvedOptions().timeZone;function rS(i,t){let e;return t=="UTC"||t=="Etc/UTC"?e=new Date(+i+i.getTimezoneOffset()*6e4):t==sS?e=i:(e=new Date(i.toLocaleString("en-US",{timeZone:t})),e.setMilliseconds(i.getMilliseconds())),e}var Cp=i=>i%1==0,$a=[1,2,2.5,5],oS=So(10,-32,0,$a),Rp=So(10,0,32,$a),aS=Rp.filter(Cp),Fs=oS.concat(Rp),su=`
`,Pp="{YYYY}",jd=su+Pp,Ip="{M}/{D}",vo=su+Ip,Ga=vo+"/{YY}",Lp="{aa}",lS="{h}:{mm}",Lr=lS+Lp,Qd=su+Lr,tp=":{ss}",ye=null;function Dp(i){let t=i*1e3,e=t*60,n=e*60,s=n*24,r=s*30,o=s*365,l=(i==1?So(10,0,3,$a).filter(Cp):So(10,-3,0,$a)).concat([t,t*5,t*10,t*15,t*30,e,e*5,e*10,e*15,e*30,n,n*2,n*3,n*4,n*6,n*8,n*12,s,s*2,s*3,s*4,s*5,s*6,s*7,s*8,s*9,s*10,s*15,r,r*2,r*3,r*4,r*6,o,o*2,o*5,o*10,o*25,o*50,o*100]),c=[[o,Pp,ye,ye,ye,ye,ye,ye,1],[s*28,"{MMM}",jd,ye,ye,ye,ye,ye,1],[s,Ip,jd,ye,ye,ye,ye,ye,1],[n,"{h}"+Lp,Ga,ye,vo,ye,ye,ye,1],[e,Lr,Ga,ye,vo,ye,ye,ye,1],[t,tp,Ga+" "+Lr,ye,vo+" "+Lr,ye,Qd,ye,1],[i,tp+".{fff}",Ga+" "+Lr,ye,vo+" "+Lr,ye,Qd,ye,1]];function u(f){return(h,d,_,x,m,p)=>{let T=[],w=m>=o,b=m>=r&&m<o,D=f(_),L=Re(D*i,3),I=Fh(D.getFullYear(),w?0:D.getMonth(),b||w?1:D.getDate()),N=Re(I*i,3);if(b||w){let E=b?m/r:0,M=w?m/o:0,C=L==N?L:Re(Fh(I.getFullYear()+M,I.getMonth()+E,1)*i,3),W=new Date(Ke(C/i)),V=W.getFullYear(),Y=W.getMonth();for(let j=0;C<=x;j++){let Z=Fh(V+M*j,Y+E*j,1),et=Z-f(Re(Z*i,3));C=Re((+Z+et)*i,3),C<=x&&T.push(C)}}else{let E=m>=s?s:m,M=kn(_)-kn(L),C=N+M+Ja(L-N,E);T.push(C);let W=f(C),V=W.getHours()+W.getMinutes()/e+W.getSeconds()/n,Y=m/n,j=h.axes[d]._space,Z=p/j;for(;C=Re(C+m,i==1?0:3),!(C>x);)if(Y>1){let et=kn(Re(V+Y,6))%24,ot=f(C).getHours()-et;ot>1&&(ot=-1),C-=ot*n,V=(V+Y)%24;let mt=T[T.length-1];Re((C-mt)/m,3)*Z>=.7&&T.push(C)}else T.push(C)}return T}}return[l,c,u]}var[cS,hS,uS]=Dp(1),[fS,dS,pS]=Dp(.001);So(2,-53,53,[1]);function ep(i,t){return i.map(e=>e.map((n,s)=>s==0||s==8||n==null?n:t(s==1||e[8]==0?n:e[1]+n)))}function np(i,t){return(e,n,s,r,o)=>{let a=t.find(_=>o>=_[0])||t[t.length-1],l,c,u,f,h,d;return n.map(_=>{let x=i(_),m=x.getFullYear(),p=x.getMonth(),T=x.getDate(),w=x.getHours(),b=x.getMinutes(),D=x.getSeconds(),L=m!=l&&a[2]||p!=c&&a[3]||T!=u&&a[4]||w!=f&&a[5]||b!=h&&a[6]||D!=d&&a[7]||a[1];return l=m,c=p,u=T,f=w,h=b,d=D,L(x)})}}function mS(i,t){let e=iu(t);return(n,s,r,o,a)=>s.map(l=>e(i(l)))}function Fh(i,t,e){return new Date(i,t,e)}function ip(i,t){return t(i)}var gS="{YYYY}-{MM}-{DD} {h}:{mm}{aa}";function sp(i,t){return(e,n,s,r)=>r==null?Kh:t(i(n))}function _S(i,t){let e=i.series[t];return e.width?e.stroke(i,t):e.points.width?e.points.stroke(i,t):null}function xS(i,t){return i.series[t].fill(i,t)}var vS={show:!0,live:!0,isolate:!1,mount:BM,markers:{show:!0,width:2,stroke:_S,fill:xS,dash:"solid"},idx:null,idxs:null,values:[]};function yS(i,t){let e=i.cursor.points,n=$n(),s=e.size(i,t);Ne(n,_o,s),Ne(n,xo,s);let r=s/-2;Ne(n,"marginLeft",r),Ne(n,"marginTop",r);let o=e.width(i,t,s);return o&&Ne(n,"borderWidth",o),n}function MS(i,t){let e=i.series[t].points;return e._fill||e._stroke}function SS(i,t){let e=i.series[t].points;return e._stroke||e._fill}function bS(i,t){return i.series[t].points.size}var Bh=[0,0];function wS(i,t,e){return Bh[0]=t,Bh[1]=e,Bh}function Wa(i,t,e,n=!0){return s=>{s.button==0&&(!n||s.target==t)&&e(s)}}function kh(i,t,e,n=!0){return s=>{(!n||s.target==t)&&e(s)}}var ES={show:!0,x:!0,y:!0,lock:!1,move:wS,points:{one:!1,show:yS,size:bS,width:0,stroke:SS,fill:MS},bind:{mousedown:Wa,mouseup:Wa,click:Wa,dblclick:Wa,mousemove:kh,mouseleave:kh,mouseenter:kh},drag:{setScale:!0,x:!0,y:!1,dist:0,uni:null,click:(i,t)=>{t.stopPropagation(),t.stopImmediatePropagation()},_x:!1,_y:!1},focus:{dist:(i,t,e,n,s)=>n-s,prox:-1,bias:0},hover:{skip:[void 0],prox:null,bias:0},left:-10,top:-10,idx:null,dataIdx:null,idxs:null,event:null},Np={show:!0,stroke:"rgba(0,0,0,0.07)",width:2},ru=qe({},Np,{filter:yp}),Up=qe({},ru,{size:10}),Op=qe({},Np,{show:!1}),ou='12px system-ui, -apple-system, "Segoe UI", Roboto, "Helvetica Neue", Arial, "Noto Sans", sans-serif, "Apple Color Emoji", "Segoe UI Emoji", "Segoe UI Symbol", "Noto Color Emoji"',Fp="bold "+ou,Bp=1.5,rp={show:!0,scale:"x",stroke:Jh,space:50,gap:5,size:50,labelGap:0,labelSize:30,labelFont:Fp,side:2,grid:ru,ticks:Up,border:Op,font:ou,lineGap:Bp,rotate:0},TS="Value",AS="Time",op={show:!0,scale:"x",auto:!1,sorted:1,min:ce,max:-ce,idxs:[]};function CS(i,t,e,n,s){return t.map(r=>r==null?"":eu(r))}function RS(i,t,e,n,s,r,o){let a=[],l=ls.get(s)||0;e=o?e:Re(Ja(e,s),l);for(let c=e;c<=n;c=Re(c+s,l))a.push(Object.is(c,-0)?0:c);return a}function Xh(i,t,e,n,s,r,o){let a=[],l=i.scales[i.axes[t].scale].log,c=l==10?zi:xp,u=kn(c(e));s=Ur(l,u),l==10&&(s=Fs[hi(s,Fs)]);let f=e,h=s*l;l==10&&(h=Fs[hi(h,Fs)]);do a.push(f),f=f+s,l==10&&!ls.has(f)&&(f=Re(f,ls.get(s))),f>=h&&(s=f,h=s*l,l==10&&(h=Fs[hi(h,Fs)]));while(f<=n);return a}function PS(i,t,e,n,s,r,o){let l=i.scales[i.axes[t].scale].asinh,c=n>l?Xh(i,t,pn(l,e),n,s):[l],u=n>=0&&e<=0?[0]:[];return(e<-l?Xh(i,t,pn(l,-n),-e,s):[l]).reverse().map(h=>-h).concat(u,c)}var kp=/./,IS=/[12357]/,LS=/[125]/,ap=/1/,Yh=(i,t,e,n)=>i.map((s,r)=>t==4&&s==0||r%n==0&&e.test(s.toExponential()[s<0?1:0])?s:null);function DS(i,t,e,n,s){let r=i.axes[e],o=r.scale,a=i.scales[o],l=i.valToPos,c=r._space,u=l(10,o),f=l(9,o)-u>=c?kp:l(7,o)-u>=c?IS:l(5,o)-u>=c?LS:ap;if(f==ap){let h=je(l(1,o)-u);if(h<c)return Yh(t.slice().reverse(),a.distr,f,Zn(c/h)).reverse()}return Yh(t,a.distr,f,1)}function NS(i,t,e,n,s){let r=i.axes[e],o=r.scale,a=r._space,l=i.valToPos,c=je(l(1,o)-l(2,o));return c<a?Yh(t.slice().reverse(),3,kp,Zn(a/c)).reverse():t}function US(i,t,e,n){return n==null?Kh:t==null?"":eu(t)}var lp={show:!0,scale:"y",stroke:Jh,space:30,gap:5,size:50,labelGap:0,labelSize:30,labelFont:Fp,side:3,grid:ru,ticks:Up,border:Op,font:ou,lineGap:Bp,rotate:0};function OS(i,t){let e=3+(i||1)*2;return Re(e*t,3)}function FS(i,t){let{scale:e,idxs:n}=i.series[0],s=i._data[0],r=i.valToPos(s[n[0]],e,!0),o=i.valToPos(s[n[1]],e,!0),a=je(o-r),l=i.series[t],c=a/(l.points.space*_e);return n[1]-n[0]<=c}var cp={scale:null,auto:!0,sorted:0,min:ce,max:-ce},zp=(i,t,e,n,s)=>s,hp={show:!0,auto:!0,sorted:0,gaps:zp,alpha:1,facets:[qe({},cp,{scale:"x"}),qe({},cp,{scale:"y"})]},up={scale:"y",auto:!0,sorted:0,show:!0,spanGaps:!1,gaps:zp,alpha:1,points:{show:FS,filter:null},values:null,min:ce,max:-ce,idxs:[],path:null,clip:null};function BS(i,t,e,n,s){return e/10}var Vp={time:!0,auto:!0,distr:1,log:10,asinh:1,min:null,max:null,dir:1,ori:0},kS=qe({},Vp,{time:!1,ori:1}),fp={};function Hp(i,t){let e=fp[i];return e||(e={key:i,plots:[],sub(n){e.plots.push(n)},unsub(n){e.plots=e.plots.filter(s=>s!=n)},pub(n,s,r,o,a,l,c){for(let u=0;u<e.plots.length;u++)e.plots[u]!=s&&e.plots[u].pub(n,s,r,o,a,l,c)}},i!=null&&(fp[i]=e)),e}var Br=1,qh=2;function Vs(i,t,e){let n=i.mode,s=i.series[t],r=n==2?i._data[t]:i._data,o=i.scales,a=i.bbox,l=r[0],c=n==2?r[1]:r[t],u=n==2?o[s.facets[0].scale]:o[i.series[0].scale],f=n==2?o[s.facets[1].scale]:o[s.scale],h=a.left,d=a.top,_=a.width,x=a.height,m=i.valToPosH,p=i.valToPosV;return u.ori==0?e(s,l,c,u,f,m,p,h,d,_,x,Qa,zr,el,Wp,Yp):e(s,l,c,u,f,p,m,d,h,x,_,tl,Vr,cu,Xp,qp)}function au(i,t){let e=0,n=0,s=me(i.bands,nu);for(let r=0;r<s.length;r++){let o=s[r];o.series[0]==t?e=o.dir:o.series[1]==t&&(o.dir==1?n|=1:n|=2)}return[e,n==1?-1:n==2?1:n==3?2:0]}function zS(i,t,e,n,s){let r=i.mode,o=i.series[t],a=r==2?o.facets[1].scale:o.scale,l=i.scales[a];return s==-1?l.min:s==1?l.max:l.distr==3?l.dir==1?l.min:l.max:0}function Vi(i,t,e,n,s,r){return Vs(i,t,(o,a,l,c,u,f,h,d,_,x,m)=>{let p=o.pxRound,T=c.dir*(c.ori==0?1:-1),w=c.ori==0?zr:Vr,b,D;T==1?(b=e,D=n):(b=n,D=e);let L=p(f(a[b],c,x,d)),I=p(h(l[b],u,m,_)),N=p(f(a[D],c,x,d)),E=p(h(r==1?u.max:u.min,u,m,_)),M=new Path2D(s);return w(M,N,E),w(M,L,E),w(M,L,I),M})}function ja(i,t,e,n,s,r){let o=null;if(i.length>0){o=new Path2D;let a=t==0?el:cu,l=e;for(let f=0;f<i.length;f++){let h=i[f];if(h[1]>h[0]){let d=h[0]-l;d>0&&a(o,l,n,d,n+r),l=h[1]}}let c=e+s-l,u=10;c>0&&a(o,l,n-u/2,c,n+r+u)}return o}function VS(i,t,e){let n=i[i.length-1];n&&n[0]==t?n[1]=e:i.push([t,e])}function lu(i,t,e,n,s,r,o){let a=[],l=i.length;for(let c=s==1?e:n;c>=e&&c<=n;c+=s)if(t[c]===null){let f=c,h=c;if(s==1)for(;++c<=n&&t[c]===null;)h=c;else for(;--c>=e&&t[c]===null;)h=c;let d=r(i[f]),_=h==f?d:r(i[h]),x=f-s;d=o<=0&&x>=0&&x<l?r(i[x]):d;let p=h+s;_=o>=0&&p>=0&&p<l?r(i[p]):_,_>=d&&a.push([d,_])}return a}function dp(i){return i==0?vp:i==1?Ke:t=>Os(t,i)}function Gp(i){let t=i==0?Qa:tl,e=i==0?(s,r,o,a,l,c)=>{s.arcTo(r,o,a,l,c)}:(s,r,o,a,l,c)=>{s.arcTo(o,r,l,a,c)},n=i==0?(s,r,o,a,l)=>{s.rect(r,o,a,l)}:(s,r,o,a,l)=>{s.rect(o,r,l,a)};return(s,r,o,a,l,c=0,u=0)=>{c==0&&u==0?n(s,r,o,a,l):(c=Jn(c,a/2,l/2),u=Jn(u,a/2,l/2),t(s,r+c,o),e(s,r+a,o,r+a,o+l,c),e(s,r+a,o+l,r,o+l,u),e(s,r,o+l,r,o,u),e(s,r,o,r+a,o,c),s.closePath())}}var Qa=(i,t,e)=>{i.moveTo(t,e)},tl=(i,t,e)=>{i.moveTo(e,t)},zr=(i,t,e)=>{i.lineTo(t,e)},Vr=(i,t,e)=>{i.lineTo(e,t)},el=Gp(0),cu=Gp(1),Wp=(i,t,e,n,s,r)=>{i.arc(t,e,n,s,r)},Xp=(i,t,e,n,s,r)=>{i.arc(e,t,n,s,r)},Yp=(i,t,e,n,s,r,o)=>{i.bezierCurveTo(t,e,n,s,r,o)},qp=(i,t,e,n,s,r,o)=>{i.bezierCurveTo(e,t,s,n,o,r)};function $p(i){return(t,e,n,s,r)=>Vs(t,e,(o,a,l,c,u,f,h,d,_,x,m)=>{let{pxRound:p,points:T}=o,w,b;c.ori==0?(w=Qa,b=Wp):(w=tl,b=Xp);let D=Re(T.width*_e,3),L=(T.size-T.width)/2*_e,I=Re(L*2,3),N=new Path2D,E=new Path2D,{left:M,top:C,width:W,height:V}=t.bbox;el(E,M-I,C-I,W+I*2,V+I*2);let Y=j=>{if(l[j]!=null){let Z=p(f(a[j],c,x,d)),et=p(h(l[j],u,m,_));w(N,Z+L,et),b(N,Z,et,L,0,Xa*2)}};if(r)r.forEach(Y);else for(let j=n;j<=s;j++)Y(j);return{stroke:D>0?N:null,fill:N,clip:E,flags:Br|qh}})}function Zp(i){return(t,e,n,s,r,o)=>{n!=s&&(r!=n&&o!=n&&i(t,e,n),r!=s&&o!=s&&i(t,e,s),i(t,e,o))}}var HS=Zp(zr),GS=Zp(Vr);function Jp(i){let t=me(i?.alignGaps,0);return(e,n,s,r)=>Vs(e,n,(o,a,l,c,u,f,h,d,_,x,m)=>{let p=o.pxRound,T=dt=>p(f(dt,c,x,d)),w=dt=>p(h(dt,u,m,_)),b,D;c.ori==0?(b=zr,D=HS):(b=Vr,D=GS);let L=c.dir*(c.ori==0?1:-1),I={stroke:new Path2D,fill:null,clip:null,band:null,gaps:null,flags:Br},N=I.stroke,E=ce,M=-ce,C,W,V,Y=T(a[L==1?s:r]),j=Nr(l,s,r,1*L),Z=Nr(l,s,r,-1*L),et=T(a[j]),K=T(a[Z]),ht=!1;for(let dt=L==1?s:r;dt>=s&&dt<=r;dt+=L){let Gt=T(a[dt]),$=l[dt];Gt==Y?$!=null?(W=w($),E==ce&&(b(N,Gt,W),C=W),E=Jn(W,E),M=pn(W,M)):$===null&&(ht=!0):(E!=ce&&(D(N,Y,E,M,C,W),V=Y),$!=null?(W=w($),b(N,Gt,W),E=M=C=W):(E=ce,M=-ce,$===null&&(ht=!0)),Y=Gt)}E!=ce&&E!=M&&V!=Y&&D(N,Y,E,M,C,W);let[ot,mt]=au(e,n);if(o.fill!=null||ot!=0){let dt=I.fill=new Path2D(N),Gt=o.fillTo(e,n,o.min,o.max,ot),$=w(Gt);b(dt,K,$),b(dt,et,$)}if(!o.spanGaps){let dt=[];ht&&dt.push(...lu(a,l,s,r,L,T,t)),I.gaps=dt=o.gaps(e,n,s,r,dt),I.clip=ja(dt,c.ori,d,_,x,m)}return mt!=0&&(I.band=mt==2?[Vi(e,n,s,r,N,-1),Vi(e,n,s,r,N,1)]:Vi(e,n,s,r,N,mt)),I})}function WS(i){let t=me(i.align,1),e=me(i.ascDesc,!1),n=me(i.alignGaps,0),s=me(i.extend,!1);return(r,o,a,l)=>Vs(r,o,(c,u,f,h,d,_,x,m,p,T,w)=>{let b=c.pxRound,{left:D,width:L}=r.bbox,I=ot=>b(_(ot,h,T,m)),N=ot=>b(x(ot,d,w,p)),E=h.ori==0?zr:Vr,M={stroke:new Path2D,fill:null,clip:null,band:null,gaps:null,flags:Br},C=M.stroke,W=h.dir*(h.ori==0?1:-1);a=Nr(f,a,l,1),l=Nr(f,a,l,-1);let V=N(f[W==1?a:l]),Y=I(u[W==1?a:l]),j=Y,Z=Y;s&&t==-1&&(Z=D,E(C,Z,V)),E(C,Y,V);for(let ot=W==1?a:l;ot>=a&&ot<=l;ot+=W){let mt=f[ot];if(mt==null)continue;let dt=I(u[ot]),Gt=N(mt);t==1?E(C,dt,V):E(C,j,Gt),E(C,dt,Gt),V=Gt,j=dt}let et=j;s&&t==1&&(et=D+L,E(C,et,V));let[K,ht]=au(r,o);if(c.fill!=null||K!=0){let ot=M.fill=new Path2D(C),mt=c.fillTo(r,o,c.min,c.max,K),dt=N(mt);E(ot,et,dt),E(ot,Z,dt)}if(!c.spanGaps){let ot=[];ot.push(...lu(u,f,a,l,W,I,n));let mt=c.width*_e/2,dt=e||t==1?mt:-mt,Gt=e||t==-1?-mt:mt;ot.forEach($=>{$[0]+=dt,$[1]+=Gt}),M.gaps=ot=c.gaps(r,o,a,l,ot),M.clip=ja(ot,h.ori,m,p,T,w)}return ht!=0&&(M.band=ht==2?[Vi(r,o,a,l,C,-1),Vi(r,o,a,l,C,1)]:Vi(r,o,a,l,C,ht)),M})}function pp(i,t,e,n,s,r,o=ce){if(i.length>1){let a=null;for(let l=0,c=1/0;l<i.length;l++)if(t[l]!==void 0){if(a!=null){let u=je(i[l]-i[a]);u<c&&(c=u,o=je(e(i[l],n,s,r)-e(i[a],n,s,r)))}a=l}}return o}function XS(i){i=i||Mo;let t=me(i.size,[.6,ce,1]),e=i.align||0,n=i.gap||0,s=i.radius;s=s==null?[0,0]:typeof s=="number"?[s,0]:s;let r=le(s),o=1-t[0],a=me(t[1],ce),l=me(t[2],1),c=me(i.disp,Mo),u=me(i.each,d=>{}),{fill:f,stroke:h}=c;return(d,_,x,m)=>Vs(d,_,(p,T,w,b,D,L,I,N,E,M,C)=>{let W=p.pxRound,V=e,Y=n*_e,j=a*_e,Z=l*_e,et,K;b.ori==0?[et,K]=r(d,_):[K,et]=r(d,_);let ht=b.dir*(b.ori==0?1:-1),ot=b.ori==0?el:cu,mt=b.ori==0?u:(J,tt,Pt,gt,yt,Xt,at)=>{u(J,tt,Pt,yt,gt,at,Xt)},dt=me(d.bands,nu).find(J=>J.series[0]==_),Gt=dt!=null?dt.dir:0,$=p.fillTo(d,_,p.min,p.max,Gt),ct=W(I($,D,C,E)),It,ut,Dt,Ht=M,zt=W(p.width*_e),se=!1,jt=null,Se=null,z=null,$e=null;f!=null&&(zt==0||h!=null)&&(se=!0,jt=f.values(d,_,x,m),Se=new Map,new Set(jt).forEach(J=>{J!=null&&Se.set(J,new Path2D)}),zt>0&&(z=h.values(d,_,x,m),$e=new Map,new Set(z).forEach(J=>{J!=null&&$e.set(J,new Path2D)})));let{x0:ee,size:Zt}=c;if(ee!=null&&Zt!=null){V=1,T=ee.values(d,_,x,m),ee.unit==2&&(T=T.map(Pt=>d.posToVal(N+Pt*M,b.key,!0)));let J=Zt.values(d,_,x,m);Zt.unit==2?ut=J[0]*M:ut=L(J[0],b,M,N)-L(0,b,M,N),Ht=pp(T,w,L,b,M,N,Ht),Dt=Ht-ut+Y}else Ht=pp(T,w,L,b,M,N,Ht),Dt=Ht*o+Y,ut=Ht-Dt;Dt<1&&(Dt=0),zt>=ut/2&&(zt=0),Dt<5&&(W=vp);let Nt=Dt>0,xe=Ht-Dt-(Nt?zt:0);ut=W(Wh(xe,Z,j)),It=(V==0?ut/2:V==ht?0:ut)-V*ht*((V==0?Y/2:0)+(Nt?zt/2:0));let Ft={stroke:null,fill:null,clip:null,band:null,gaps:null,flags:0},A=se?null:new Path2D,v=null;if(dt!=null)v=d.data[dt.series[1]];else{let{y0:J,y1:tt}=c;J!=null&&tt!=null&&(w=tt.values(d,_,x,m),v=J.values(d,_,x,m))}let B=et*ut,nt=K*ut;for(let J=ht==1?x:m;J>=x&&J<=m;J+=ht){let tt=w[J];if(tt==null)continue;if(v!=null){let Vt=v[J]??0;if(tt-Vt==0)continue;ct=I(Vt,D,C,E)}let Pt=b.distr!=2||c!=null?T[J]:J,gt=L(Pt,b,M,N),yt=I(me(tt,$),D,C,E),Xt=W(gt-It),at=W(pn(yt,ct)),_t=W(Jn(yt,ct)),Bt=at-_t;if(tt!=null){let Vt=tt<0?nt:B,St=tt<0?B:nt;se?(zt>0&&z[J]!=null&&ot($e.get(z[J]),Xt,_t+kn(zt/2),ut,pn(0,Bt-zt),Vt,St),jt[J]!=null&&ot(Se.get(jt[J]),Xt,_t+kn(zt/2),ut,pn(0,Bt-zt),Vt,St)):ot(A,Xt,_t+kn(zt/2),ut,pn(0,Bt-zt),Vt,St),mt(d,_,J,Xt-zt/2,_t,ut+zt,Bt)}}return zt>0?Ft.stroke=se?$e:A:se||(Ft._fill=p.width==0?p._fill:p._stroke??p._fill,Ft.width=0),Ft.fill=se?Se:A,Ft})}function YS(i,t){let e=me(t?.alignGaps,0);return(n,s,r,o)=>Vs(n,s,(a,l,c,u,f,h,d,_,x,m,p)=>{let T=a.pxRound,w=et=>T(h(et,u,m,_)),b=et=>T(d(et,f,p,x)),D,L,I;u.ori==0?(D=Qa,I=zr,L=Yp):(D=tl,I=Vr,L=qp);let N=u.dir*(u.ori==0?1:-1);r=Nr(c,r,o,1),o=Nr(c,r,o,-1);let E=w(l[N==1?r:o]),M=E,C=[],W=[];for(let et=N==1?r:o;et>=r&&et<=o;et+=N)if(c[et]!=null){let ht=l[et],ot=w(ht);C.push(M=ot),W.push(b(c[et]))}let V={stroke:i(C,W,D,I,L,T),fill:null,clip:null,band:null,gaps:null,flags:Br},Y=V.stroke,[j,Z]=au(n,s);if(a.fill!=null||j!=0){let et=V.fill=new Path2D(Y),K=a.fillTo(n,s,a.min,a.max,j),ht=b(K);I(et,M,ht),I(et,E,ht)}if(!a.spanGaps){let et=[];et.push(...lu(l,c,r,o,N,w,e)),V.gaps=et=a.gaps(n,s,r,o,et),V.clip=ja(et,u.ori,_,x,m,p)}return Z!=0&&(V.band=Z==2?[Vi(n,s,r,o,Y,-1),Vi(n,s,r,o,Y,1)]:Vi(n,s,r,o,Y,Z)),V})}function qS(i){return YS($S,i)}function $S(i,t,e,n,s,r){let o=i.length;if(o<2)return null;let a=new Path2D;if(e(a,i[0],t[0]),o==2)n(a,i[1],t[1]);else{let l=Array(o),c=Array(o-1),u=Array(o-1),f=Array(o-1);for(let h=0;h<o-1;h++)u[h]=t[h+1]-t[h],f[h]=i[h+1]-i[h],c[h]=u[h]/f[h];l[0]=c[0];for(let h=1;h<o-1;h++)c[h]===0||c[h-1]===0||c[h-1]>0!=c[h]>0?l[h]=0:(l[h]=3*(f[h-1]+f[h])/((2*f[h]+f[h-1])/c[h-1]+(f[h]+2*f[h-1])/c[h]),isFinite(l[h])||(l[h]=0));l[o-1]=c[o-2];for(let h=0;h<o-1;h++)s(a,i[h]+f[h]/3,t[h]+l[h]*f[h]/3,i[h+1]-f[h]/3,t[h+1]-l[h+1]*f[h]/3,i[h+1],t[h+1])}return a}var $h=new Set;function mp(){for(let i of $h)i.syncRect(!0)}kr&&(ks(CM,Dr,mp),ks(RM,Dr,mp,!0),ks(Ya,Dr,()=>{hn.pxRatio=_e}));var ZS=Jp(),JS=$p();function gp(i,t,e,n){return(n?[i[0],i[1]].concat(i.slice(2)):[i[0]].concat(i.slice(1))).map((r,o)=>Zh(r,o,t,e))}function KS(i,t){return i.map((e,n)=>n==0?{}:qe({},t,e))}function Zh(i,t,e,n){return qe({},t==0?e:n,i)}function Kp(i,t,e){return t==null?Or:[t,e]}var jS=Kp;function QS(i,t,e){return t==null?Or:qa(t,e,tu,!0)}function jp(i,t,e,n){return t==null?Or:Za(t,e,i.scales[n].log,!1)}var tb=jp;function Qp(i,t,e,n){return t==null?Or:Qh(t,e,i.scales[n].log,!1)}var eb=Qp;function nb(i,t,e,n,s){let r=pn($d(i),$d(t)),o=t-i,a=hi(s/n*o,e);do{let l=e[a],c=n*l/o;if(c>=s&&r+(l<5?ls.get(l):0)<=17)return[l,c]}while(++a<e.length);return[0,0]}function _p(i){let t,e;return i=i.replace(/(\d+)px/,(n,s)=>(t=Ke((e=+s)*_e))+"px"),[i,t,e]}function ib(i){i.show&&[i.font,i.labelFont].forEach(t=>{let e=Re(t[2]*_e,1);t[0]=t[0].replace(/[0-9.]+px/,e+"px"),t[1]=e})}function hn(i,t,e){let n={mode:me(i.mode,1)},s=n.mode;function r(g,y){return((y.distr==3?zi(g>0?g:y.clamp(n,g,y.min,y.max,y.key)):y.distr==4?Oh(g,y.asinh):y.distr==100?y.fwd(g):g)-y._min)/(y._max-y._min)}function o(g,y,R,P){let F=r(g,y);return P+R*(y.dir==-1?1-F:F)}function a(g,y,R,P){let F=r(g,y);return P+R*(y.dir==-1?F:1-F)}function l(g,y,R,P){return y.ori==0?o(g,y,R,P):a(g,y,R,P)}n.valToPosH=o,n.valToPosV=a;let c=!1;n.status=0;let u=n.root=$n(hM);if(i.id!=null&&(u.id=i.id),Bn(u,i.class),i.title){let g=$n(dM,u);g.textContent=i.title}let f=ci("canvas"),h=n.ctx=f.getContext("2d"),d=$n(pM,u);ks("click",d,g=>{g.target===x&&(Pe!=qs||Oe!=$s)&&ln.click(n,g)},!0);let _=n.under=$n(mM,d);d.appendChild(f);let x=n.over=$n(gM,d);i=Fr(i);let m=+me(i.pxAlign,1),p=dp(m);(i.plugins||[]).forEach(g=>{g.opts&&(i=g.opts(n,i)||i)});let T=i.ms||.001,w=n.series=s==1?gp(i.series||[],op,up,!1):KS(i.series||[null],hp),b=n.axes=gp(i.axes||[],rp,lp,!0),D=n.scales={},L=n.bands=i.bands||[];L.forEach(g=>{g.fill=le(g.fill||null),g.dir=me(g.dir,-1)});let I=s==2?w[1].facets[0].scale:w[0].scale,N={axes:um,series:Ae},E=(i.drawOrder||["axes","series"]).map(g=>N[g]);function M(g){let y=D[g];if(y==null){let R=(i.scales||Mo)[g]||Mo;if(R.from!=null)M(R.from),D[g]=qe({},D[R.from],R,{key:g});else{y=D[g]=qe({},g==I?Vp:kS,R),y.key=g;let P=y.time,F=y.range,X=as(F);if((g!=I||s==2&&!P)&&(X&&(F[0]==null||F[1]==null)&&(F={min:F[0]==null?Xd:{mode:1,hard:F[0],soft:F[0]},max:F[1]==null?Xd:{mode:1,hard:F[1],soft:F[1]}},X=!1),!X&&Ka(F))){let it=F;F=(lt,pt,Et)=>pt==null?Or:qa(pt,Et,it)}y.range=le(F||(P?jS:g==I?y.distr==3?tb:y.distr==4?eb:Kp:y.distr==3?jp:y.distr==4?Qp:QS)),y.auto=le(X?!1:y.auto),y.clamp=le(y.clamp||BS),y._min=y._max=null}}}M("x"),M("y"),s==1&&w.forEach(g=>{M(g.scale)}),b.forEach(g=>{M(g.scale)});for(let g in i.scales)M(g);let C=D[I],W=C.distr,V,Y;C.ori==0?(Bn(u,uM),V=o,Y=a):(Bn(u,fM),V=a,Y=o);let j={};for(let g in D){let y=D[g];(y.min!=null||y.max!=null)&&(j[g]={min:y.min,max:y.max},y.min=y.max=null)}let Z=i.tzDate||(g=>new Date(Ke(g/T))),et=i.fmtDate||iu,K=T==1?uS(Z):pS(Z),ht=np(Z,ep(T==1?hS:dS,et)),ot=sp(Z,ip(gS,et)),mt=[],dt=n.legend=qe({},vS,i.legend),Gt=dt.show,$=dt.markers;dt.idxs=mt,$.width=le($.width),$.dash=le($.dash),$.stroke=le($.stroke),$.fill=le($.fill);let ct,It,ut,Dt=[],Ht=[],zt,se=!1,jt={};if(dt.live){let g=w[1]?w[1].values:null;se=g!=null,zt=se?g(n,1,0):{_:0};for(let y in zt)jt[y]=Kh}if(Gt)if(ct=ci("table",SM,u),ut=ci("tbody",null,ct),dt.mount(n,ct),se){It=ci("thead",null,ct,ut);let g=ci("tr",null,It);ci("th",null,g);for(var Se in zt)ci("th",Id,g).textContent=Se}else Bn(ct,wM),dt.live&&Bn(ct,bM);let z={show:!0},$e={show:!1};function ee(g,y){if(y==0&&(se||!dt.live||s==2))return Or;let R=[],P=ci("tr",EM,ut,ut.childNodes[y]);Bn(P,g.class),g.show||Bn(P,Bs);let F=ci("th",null,P);if($.show){let lt=$n(TM,F);if(y>0){let pt=$.width(n,y);pt&&(lt.style.border=pt+"px "+$.dash(n,y)+" "+$.stroke(n,y)),lt.style.background=$.fill(n,y)}}let X=$n(Id,F);X.textContent=g.label,y>0&&($.show||(X.style.color=g.width>0?$.stroke(n,y):$.fill(n,y)),Nt("click",F,lt=>{if(At._lock)return;re(lt);let pt=w.indexOf(g);if((lt.ctrlKey||lt.metaKey)!=dt.isolate){let Et=w.some((Tt,Rt)=>Rt>0&&Rt!=pt&&Tt.show);w.forEach((Tt,Rt)=>{Rt>0&&pi(Rt,Et?Rt==pt?z:$e:z,!0,Ge.setSeries)})}else pi(pt,{show:!g.show},!0,Ge.setSeries)},!1),yi&&Nt(Od,F,lt=>{At._lock||(re(lt),pi(w.indexOf(g),Js,!0,Ge.setSeries))},!1));for(var it in zt){let lt=ci("td",AM,P);lt.textContent="--",R.push(lt)}return[P,R]}let Zt=new Map;function Nt(g,y,R,P=!0){let F=Zt.get(y)||{},X=At.bind[g](n,y,R,P);X&&(ks(g,y,F[g]=X),Zt.set(y,F))}function xe(g,y,R){let P=Zt.get(y)||{};for(let F in P)(g==null||F==g)&&(Gh(F,y,P[F]),delete P[F]);g==null&&Zt.delete(y)}let Ft=0,A=0,v=0,B=0,nt=0,J=0,tt=nt,Pt=J,gt=v,yt=B,Xt=0,at=0,_t=0,Bt=0;n.bbox={};let Vt=!1,St=!1,Qt=!1,Yt=!1,ge=!1,U=!1;function xt(g,y,R){(R||g!=n.width||y!=n.height)&&Q(g,y),Gs(!1),Qt=!0,St=!0,Ws()}function Q(g,y){n.width=Ft=v=g,n.height=A=B=y,nt=J=0,Jt(),Ue();let R=n.bbox;Xt=R.left=Os(nt*_e,.5),at=R.top=Os(J*_e,.5),_t=R.width=Os(v*_e,.5),Bt=R.height=Os(B*_e,.5)}let st=3;function wt(){let g=!1,y=0;for(;!g;){y++;let R=cm(y),P=hm(y);g=y==st||R&&P,g||(Q(n.width,n.height),St=!0)}}function bt({width:g,height:y}){xt(g,y)}n.setSize=bt;function Jt(){let g=!1,y=!1,R=!1,P=!1;b.forEach((F,X)=>{if(F.show&&F._show){let{side:it,_size:lt}=F,pt=it%2,Et=F.label!=null?F.labelSize:0,Tt=lt+Et;Tt>0&&(pt?(v-=Tt,it==3?(nt+=Tt,P=!0):R=!0):(B-=Tt,it==0?(J+=Tt,g=!0):y=!0))}}),fi[0]=g,fi[1]=R,fi[2]=y,fi[3]=P,v-=di[1]+di[3],nt+=di[3],B-=di[2]+di[0],J+=di[0]}function Ue(){let g=nt+v,y=J+B,R=nt,P=J;function F(X,it){switch(X){case 1:return g+=it,g-it;case 2:return y+=it,y-it;case 3:return R-=it,R+it;case 0:return P-=it,P+it}}b.forEach((X,it)=>{if(X.show&&X._show){let lt=X.side;X._pos=F(lt,X._size),X.label!=null&&(X._lpos=F(lt,X.labelSize))}})}let At=n.cursor=qe({},ES,{drag:{y:s==2}},i.cursor);if(At.dataIdx==null){let g=At.hover,y=g.skip=new Set(g.skip??[]);y.add(void 0);let R=g.prox=le(g.prox),P=g.bias??=0;At.dataIdx=(F,X,it,lt)=>{if(X==0)return it;let pt=it,Et=R(F,X,it,lt)??ce,Tt=Et>=0&&Et<ce,Rt=C.ori==0?v:B,$t=At.left,Ce=t[0],he=t[X];if(y.has(he[it])){pt=null;let oe=null,Kt=null,kt;if(P==0||P==-1)for(kt=it;oe==null&&kt-- >0;)y.has(he[kt])||(oe=kt);if(P==0||P==1)for(kt=it;Kt==null&&kt++<he.length;)y.has(he[kt])||(Kt=kt);if(oe!=null||Kt!=null)if(Tt){let we=oe==null?-1/0:V(Ce[oe],C,Rt,0),ze=Kt==null?1/0:V(Ce[Kt],C,Rt,0),ke=$t-we,Le=ze-$t;ke<=Le?ke<=Et&&(pt=oe):Le<=Et&&(pt=Kt)}else pt=Kt==null?oe:oe==null?Kt:it-oe<=Kt-it?oe:Kt}else Tt&&je($t-V(Ce[it],C,Rt,0))>Et&&(pt=null);return pt}}let re=g=>{At.event=g};At.idxs=mt,At._lock=!1;let be=At.points;be.show=le(be.show),be.size=le(be.size),be.stroke=le(be.stroke),be.width=le(be.width),be.fill=le(be.fill);let en=n.focus=qe({},i.focus||{alpha:.3},At.focus),yi=en.prox>=0,Mi=yi&&be.one,He=[],ui=[],Si=[];function Hr(g,y){let R=be.show(n,y);if(R)return Bn(R,MM),Bn(R,g.class),vi(R,-10,-10,v,B),x.insertBefore(R,He[y]),R}function cs(g,y){if(s==1||y>0){let R=s==1&&D[g.scale].time,P=g.value;g.value=R?Kd(P)?sp(Z,ip(P,et)):P||ot:P||US,g.label=g.label||(R?AS:TS)}if(Mi||y>0){g.width=g.width==null?1:g.width,g.paths=g.paths||ZS||kM,g.fillTo=le(g.fillTo||zS),g.pxAlign=+me(g.pxAlign,m),g.pxRound=dp(g.pxAlign),g.stroke=le(g.stroke||null),g.fill=le(g.fill||null),g._stroke=g._fill=g._paths=g._focus=null;let R=OS(pn(1,g.width),1),P=g.points=qe({},{size:R,width:pn(1,R*.2),stroke:g.stroke,space:R*2,paths:JS,_stroke:null,_fill:null},g.points);P.show=le(P.show),P.filter=le(P.filter),P.fill=le(P.fill),P.stroke=le(P.stroke),P.paths=le(P.paths),P.pxAlign=g.pxAlign}if(Gt){let R=ee(g,y);Dt.splice(y,0,R[0]),Ht.splice(y,0,R[1]),dt.values.push(null)}if(At.show){mt.splice(y,0,null);let R=null;Mi?y==0&&(R=Hr(g,y)):y>0&&(R=Hr(g,y)),He.splice(y,0,R),ui.splice(y,0,0),Si.splice(y,0,0)}on("addSeries",y)}function bo(g,y){y=y??w.length,g=s==1?Zh(g,y,op,up):Zh(g,y,{},hp),w.splice(y,0,g),cs(w[y],y)}n.addSeries=bo;function Hs(g){if(w.splice(g,1),Gt){dt.values.splice(g,1),Ht.splice(g,1);let y=Dt.splice(g,1)[0];xe(null,y.firstChild),y.remove()}At.show&&(mt.splice(g,1),He.splice(g,1)[0].remove(),ui.splice(g,1),Si.splice(g,1)),on("delSeries",g)}n.delSeries=Hs;let fi=[!1,!1,!1,!1];function wo(g,y){if(g._show=g.show,g.show){let R=g.side%2,P=D[g.scale];P==null&&(g.scale=R?w[1].scale:I,P=D[g.scale]);let F=P.time;g.size=le(g.size),g.space=le(g.space),g.rotate=le(g.rotate),as(g.incrs)&&g.incrs.forEach(it=>{!ls.has(it)&&ls.set(it,Sp(it))}),g.incrs=le(g.incrs||(P.distr==2?aS:F?T==1?cS:fS:Fs)),g.splits=le(g.splits||(F&&P.distr==1?K:P.distr==3?Xh:P.distr==4?PS:RS)),g.stroke=le(g.stroke),g.grid.stroke=le(g.grid.stroke),g.ticks.stroke=le(g.ticks.stroke),g.border.stroke=le(g.border.stroke);let X=g.values;g.values=as(X)&&!as(X[0])?le(X):F?as(X)?np(Z,ep(X,et)):Kd(X)?mS(Z,X):X||ht:X||CS,g.filter=le(g.filter||(P.distr>=3&&P.log==10?DS:P.distr==3&&P.log==2?NS:yp)),g.font=_p(g.font),g.labelFont=_p(g.labelFont),g._size=g.size(n,null,y,0),g._space=g._rotate=g._incrs=g._found=g._splits=g._values=null,g._size>0&&(fi[y]=!0,g._el=$n(_M,d))}}function hs(g,y,R,P){let[F,X,it,lt]=R,pt=y%2,Et=0;return pt==0&&(lt||X)&&(Et=y==0&&!F||y==2&&!it?Ke(rp.size/3):0),pt==1&&(F||it)&&(Et=y==1&&!X||y==3&&!lt?Ke(lp.size/2):0),Et}let Eo=n.padding=(i.padding||[hs,hs,hs,hs]).map(g=>le(me(g,hs))),di=n._padding=Eo.map((g,y)=>g(n,y,fi,0)),S,O=null,G=null,q=s==1?w[0].idxs:null,k=null,ft=!1;function Mt(g,y){if(t=g??[],n.data=n._data=t,s==2){S=0;for(let R=1;R<w.length;R++)S+=t[R][0].length}else{t.length==0&&(n.data=n._data=t=[[]]),k=t[0],S=k.length;let R=t;if(W==2){R=t.slice();let P=R[0]=Array(S);for(let F=0;F<S;F++)P[F]=F}n._data=t=R}if(Gs(!0),on("setData"),W==2&&(Qt=!0),y!==!1){let R=C;R.auto(n,ft)?Ut():Wi(I,R.min,R.max),Yt=Yt||At.left>=0,U=!0,Ws()}}n.setData=Mt;function Ut(){ft=!0;let g,y;s==1&&(S>0?(O=q[0]=0,G=q[1]=S-1,g=t[0][O],y=t[0][G],W==2?(g=O,y=G):g==y&&(W==3?[g,y]=Za(g,g,C.log,!1):W==4?[g,y]=Qh(g,g,C.log,!1):C.time?y=g+Ke(86400/T):[g,y]=qa(g,y,tu,!0))):(O=q[0]=g=null,G=q[1]=y=null)),Wi(I,g,y)}let Lt,Wt,qt,Ot,ae,ve,Me,nn,ue,Ct;function Vn(g,y,R,P,F,X){g??=Dd,R??=nu,P??="butt",F??=Dd,X??="round",g!=Lt&&(h.strokeStyle=Lt=g),F!=Wt&&(h.fillStyle=Wt=F),y!=qt&&(h.lineWidth=qt=y),X!=ae&&(h.lineJoin=ae=X),P!=ve&&(h.lineCap=ve=P),R!=Ot&&h.setLineDash(Ot=R)}function fe(g,y,R,P){y!=Wt&&(h.fillStyle=Wt=y),g!=Me&&(h.font=Me=g),R!=nn&&(h.textAlign=nn=R),P!=ue&&(h.textBaseline=ue=P)}function mn(g,y,R,P,F=0){if(P.length>0&&g.auto(n,ft)&&(y==null||y.min==null)){let X=me(O,0),it=me(G,P.length-1),lt=R.min==null?g.distr==3?DM(P,X,it):LM(P,X,it,F):[R.min,R.max];g.min=Jn(g.min,R.min=lt[0]),g.max=pn(g.max,R.max=lt[1])}}let bi={min:null,max:null};function gn(){for(let P in D){let F=D[P];j[P]==null&&(F.min==null||j[I]!=null&&F.auto(n,ft))&&(j[P]=bi)}for(let P in D){let F=D[P];j[P]==null&&F.from!=null&&j[F.from]!=null&&(j[P]=bi)}j[I]!=null&&Gs(!0);let g={};for(let P in j){let F=j[P];if(F!=null){let X=g[P]=Fr(D[P],HM);if(F.min!=null)qe(X,F);else if(P!=I||s==2)if(S==0&&X.from==null){let it=X.range(n,null,null,P);X.min=it[0],X.max=it[1]}else X.min=ce,X.max=-ce}}if(S>0){w.forEach((P,F)=>{if(s==1){let X=P.scale,it=j[X];if(it==null)return;let lt=g[X];if(F==0){let pt=lt.range(n,lt.min,lt.max,X);lt.min=pt[0],lt.max=pt[1],O=hi(lt.min,t[0]),G=hi(lt.max,t[0]),G-O>1&&(t[0][O]<lt.min&&O++,t[0][G]>lt.max&&G--),P.min=k[O],P.max=k[G]}else P.show&&P.auto&&mn(lt,it,P,t[F],P.sorted);P.idxs[0]=O,P.idxs[1]=G}else if(F>0&&P.show&&P.auto){let[X,it]=P.facets,lt=X.scale,pt=it.scale,[Et,Tt]=t[F],Rt=g[lt],$t=g[pt];Rt!=null&&mn(Rt,j[lt],X,Et,X.sorted),$t!=null&&mn($t,j[pt],it,Tt,it.sorted),P.min=it.min,P.max=it.max}});for(let P in g){let F=g[P],X=j[P];if(F.from==null&&(X==null||X.min==null)){let it=F.range(n,F.min==ce?null:F.min,F.max==-ce?null:F.max,P);F.min=it[0],F.max=it[1]}}}for(let P in g){let F=g[P];if(F.from!=null){let X=g[F.from];if(X.min==null)F.min=F.max=null;else{let it=F.range(n,X.min,X.max,P);F.min=it[0],F.max=it[1]}}}let y={},R=!1;for(let P in g){let F=g[P],X=D[P];if(X.min!=F.min||X.max!=F.max){X.min=F.min,X.max=F.max;let it=X.distr;X._min=it==3?zi(X.min):it==4?Oh(X.min,X.asinh):it==100?X.fwd(X.min):X.min,X._max=it==3?zi(X.max):it==4?Oh(X.max,X.asinh):it==100?X.fwd(X.max):X.max,y[P]=R=!0}}if(R){w.forEach((P,F)=>{s==2?F>0&&y.y&&(P._paths=null):y[P.scale]&&(P._paths=null)});for(let P in y)Qt=!0,on("setScale",P);At.show&&At.left>=0&&(Yt=U=!0)}for(let P in j)j[P]=null}function us(g){let y=Wh(O-1,0,S-1),R=Wh(G+1,0,S-1);for(;g[y]==null&&y>0;)y--;for(;g[R]==null&&R<S-1;)R++;return[y,R]}function Ae(){S>0&&(w.forEach((g,y)=>{if(y>0&&g.show&&(Rn(y,!1),Rn(y,!0),g._paths==null)){Ct!=g.alpha&&(h.globalAlpha=Ct=g.alpha);let R=s==2?[0,t[y][0].length-1]:us(t[y]);g._paths=g.paths(n,y,R[0],R[1]),Ct!=1&&(h.globalAlpha=Ct=1)}}),w.forEach((g,y)=>{if(y>0&&g.show){Ct!=g.alpha&&(h.globalAlpha=Ct=g.alpha),g._paths!=null&&Hi(y,!1);{let R=g._paths!=null?g._paths.gaps:null,P=g.points.show(n,y,O,G,R),F=g.points.filter(n,y,P,R);(P||F)&&(g.points._paths=g.points.paths(n,y,O,G,F),Hi(y,!0))}Ct!=1&&(h.globalAlpha=Ct=1),on("drawSeries",y)}}))}function Rn(g,y){let R=y?w[g].points:w[g];R._stroke=R.stroke(n,g),R._fill=R.fill(n,g)}function Hi(g,y){let R=y?w[g].points:w[g],{stroke:P,fill:F,clip:X,flags:it,_stroke:lt=R._stroke,_fill:pt=R._fill,_width:Et=R.width}=R._paths;Et=Re(Et*_e,3);let Tt=null,Rt=Et%2/2;y&&pt==null&&(pt=Et>0?"#fff":lt);let $t=R.pxAlign==1&&Rt>0;if($t&&h.translate(Rt,Rt),!y){let Ce=Xt-Et/2,he=at-Et/2,oe=_t+Et,Kt=Bt+Et;Tt=new Path2D,Tt.rect(Ce,he,oe,Kt)}y?Hn(lt,Et,R.dash,R.cap,pt,P,F,it,X):Sn(g,lt,Et,R.dash,R.cap,pt,P,F,it,Tt,X),$t&&h.translate(-Rt,-Rt)}function Sn(g,y,R,P,F,X,it,lt,pt,Et,Tt){let Rt=!1;pt!=0&&L.forEach(($t,Ce)=>{if($t.series[0]==g){let he=w[$t.series[1]],oe=t[$t.series[1]],Kt=(he._paths||Mo).band;as(Kt)&&(Kt=$t.dir==1?Kt[0]:Kt[1]);let kt,we=null;he.show&&Kt&&UM(oe,O,G)?(we=$t.fill(n,Ce)||X,kt=he._paths.clip):Kt=null,Hn(y,R,P,F,we,it,lt,pt,Et,Tt,kt,Kt),Rt=!0}}),Rt||Hn(y,R,P,F,X,it,lt,pt,Et,Tt)}let Kn=Br|qh;function Hn(g,y,R,P,F,X,it,lt,pt,Et,Tt,Rt){Vn(g,y,R,P,F),(pt||Et||Rt)&&(h.save(),pt&&h.clip(pt),Et&&h.clip(Et)),Rt?(lt&Kn)==Kn?(h.clip(Rt),Tt&&h.clip(Tt),To(F,it),fs(g,X,y)):lt&qh?(To(F,it),h.clip(Rt),fs(g,X,y)):lt&Br&&(h.save(),h.clip(Rt),Tt&&h.clip(Tt),To(F,it),h.restore(),fs(g,X,y)):(To(F,it),fs(g,X,y)),(pt||Et||Rt)&&h.restore()}function fs(g,y,R){R>0&&(y instanceof Map?y.forEach((P,F)=>{h.strokeStyle=Lt=F,h.stroke(P)}):y!=null&&g&&h.stroke(y))}function To(g,y){y instanceof Map?y.forEach((R,P)=>{h.fillStyle=Wt=P,h.fill(R)}):y!=null&&g&&h.fill(y)}function lm(g,y,R,P){let F=b[g],X;if(P<=0)X=[0,0];else{let it=F._space=F.space(n,g,y,R,P),lt=F._incrs=F.incrs(n,g,y,R,P,it);X=nb(y,R,lt,P,it)}return F._found=X}function al(g,y,R,P,F,X,it,lt,pt,Et){let Tt=it%2/2;m==1&&h.translate(Tt,Tt),Vn(lt,it,pt,Et,lt),h.beginPath();let Rt,$t,Ce,he,oe=F+(P==0||P==3?-X:X);R==0?($t=F,he=oe):(Rt=F,Ce=oe);for(let Kt=0;Kt<g.length;Kt++)y[Kt]!=null&&(R==0?Rt=Ce=g[Kt]:$t=he=g[Kt],h.moveTo(Rt,$t),h.lineTo(Ce,he));h.stroke(),m==1&&h.translate(-Tt,-Tt)}function cm(g){let y=!0;return b.forEach((R,P)=>{if(!R.show)return;let F=D[R.scale];if(F.min==null){R._show&&(y=!1,R._show=!1,Gs(!1));return}else R._show||(y=!1,R._show=!0,Gs(!1));let X=R.side,it=X%2,{min:lt,max:pt}=F,[Et,Tt]=lm(P,lt,pt,it==0?v:B);if(Tt==0)return;let Rt=F.distr==2,$t=R._splits=R.splits(n,P,lt,pt,Et,Tt,Rt),Ce=F.distr==2?$t.map(kt=>k[kt]):$t,he=F.distr==2?k[$t[1]]-k[$t[0]]:Et,oe=R._values=R.values(n,R.filter(n,Ce,P,Tt,he),P,Tt,he);R._rotate=X==2?R.rotate(n,oe,P,Tt):0;let Kt=R._size;R._size=Zn(R.size(n,oe,P,g)),Kt!=null&&R._size!=Kt&&(y=!1)}),y}function hm(g){let y=!0;return Eo.forEach((R,P)=>{let F=R(n,P,fi,g);F!=di[P]&&(y=!1),di[P]=F}),y}function um(){for(let g=0;g<b.length;g++){let y=b[g];if(!y.show||!y._show)continue;let R=y.side,P=R%2,F,X,it=y.stroke(n,g),lt=R==0||R==3?-1:1;if(y.label){let vn=y.labelGap*lt,Pn=Ke((y._lpos+vn)*_e);fe(y.labelFont[0],it,"center",R==2?mo:Ld),h.save(),P==1?(F=X=0,h.translate(Pn,Ke(at+Bt/2)),h.rotate((R==3?-Xa:Xa)/2)):(F=Ke(Xt+_t/2),X=Pn),h.fillText(y.label,F,X),h.restore()}let[pt,Et]=y._found;if(Et==0)continue;let Tt=D[y.scale],Rt=P==0?_t:Bt,$t=P==0?Xt:at,Ce=Ke(y.gap*_e),he=y._splits,oe=Tt.distr==2?he.map(vn=>k[vn]):he,Kt=Tt.distr==2?k[he[1]]-k[he[0]]:pt,kt=y.ticks,we=y.border,ze=kt.show?Ke(kt.size*_e):0,ke=y._rotate*-Xa/180,Le=p(y._pos*_e),We=(ze+Ce)*lt,bn=Le+We;X=P==0?bn:0,F=P==1?bn:0;let wn=y.font[0],Gn=y.align==1?Ir:y.align==2?Nh:ke>0?Ir:ke<0?Nh:P==0?"center":R==3?Nh:Ir,jn=ke||P==1?"middle":R==2?mo:Ld;fe(wn,it,Gn,jn);let Qn=y.font[1]*y.lineGap,_n=he.map(vn=>p(l(vn,Tt,Rt,$t))),gi=y._values;for(let vn=0;vn<gi.length;vn++){let Pn=gi[vn];if(Pn!=null){P==0?F=_n[vn]:X=_n[vn],Pn=""+Pn;let js=Pn.indexOf(`
`)==-1?[Pn]:Pn.split(/\n/gm);for(let qi=0;qi<js.length;qi++){let Wn=js[qi];ke?(h.save(),h.translate(F,X+qi*Qn),h.rotate(ke),h.fillText(Wn,0,0),h.restore()):h.fillText(Wn,F,X+qi*Qn)}}}kt.show&&al(_n,kt.filter(n,oe,g,Et,Kt),P,R,Le,ze,Re(kt.width*_e,3),kt.stroke(n,g),kt.dash,kt.cap);let xn=y.grid;xn.show&&al(_n,xn.filter(n,oe,g,Et,Kt),P,P==0?2:1,P==0?at:Xt,P==0?Bt:_t,Re(xn.width*_e,3),xn.stroke(n,g),xn.dash,xn.cap),we.show&&al([Le],[1],P==0?1:0,P==0?1:2,P==1?at:Xt,P==1?Bt:_t,Re(we.width*_e,3),we.stroke(n,g),we.dash,we.cap)}on("drawAxes")}function Gs(g){w.forEach((y,R)=>{R>0&&(y._paths=null,g&&(s==1?(y.min=null,y.max=null):y.facets.forEach(P=>{P.min=null,P.max=null})))})}let Ao=!1,ll=!1,Gr=[];function fm(){ll=!1;for(let g=0;g<Gr.length;g++)on(...Gr[g]);Gr.length=0}function Ws(){Ao||(ZM(mu),Ao=!0)}function dm(g,y=!1){Ao=!0,ll=y,g(n),mu(),y&&Gr.length>0&&queueMicrotask(fm)}n.batch=dm;function mu(){if(Vt&&(gn(),Vt=!1),Qt&&(wt(),Qt=!1),St){if(Ne(_,Ir,nt),Ne(_,mo,J),Ne(_,_o,v),Ne(_,xo,B),Ne(x,Ir,nt),Ne(x,mo,J),Ne(x,_o,v),Ne(x,xo,B),Ne(d,_o,Ft),Ne(d,xo,A),f.width=Ke(Ft*_e),f.height=Ke(A*_e),b.forEach(({_el:g,_show:y,_size:R,_pos:P,side:F})=>{if(g!=null)if(y){let X=F===3||F===0?R:0,it=F%2==1;Ne(g,it?"left":"top",P-X),Ne(g,it?"width":"height",R),Ne(g,it?"top":"left",it?J:nt),Ne(g,it?"height":"width",it?B:v),Hh(g,Bs)}else Bn(g,Bs)}),Lt=Wt=qt=ae=ve=Me=nn=ue=Ot=null,Ct=1,Yr(!0),nt!=tt||J!=Pt||v!=gt||B!=yt){Gs(!1);let g=v/gt,y=B/yt;if(At.show&&!Yt&&At.left>=0){At.left*=g,At.top*=y,Xs&&vi(Xs,Ke(At.left),0,v,B),Ys&&vi(Ys,0,Ke(At.top),v,B);for(let R=0;R<He.length;R++){let P=He[R];P!=null&&(ui[R]*=g,Si[R]*=y,vi(P,Zn(ui[R]),Zn(Si[R]),v,B))}}if(Ie.show&&!ge&&Ie.left>=0&&Ie.width>0){Ie.left*=g,Ie.width*=g,Ie.top*=y,Ie.height*=y;for(let R in pl)Ne(Zs,R,Ie[R])}tt=nt,Pt=J,gt=v,yt=B}on("setSize"),St=!1}Ft>0&&A>0&&(h.clearRect(0,0,f.width,f.height),on("drawClear"),E.forEach(g=>g()),on("draw")),Ie.show&&ge&&(Co(Ie),ge=!1),At.show&&Yt&&(ps(null,!0,!1),Yt=!1),dt.show&&dt.live&&U&&(fl(),U=!1),c||(c=!0,n.status=1,on("ready")),ft=!1,Ao=!1}n.redraw=(g,y)=>{Qt=y||!1,g!==!1?Wi(I,C.min,C.max):Ws()};function cl(g,y){let R=D[g];if(R.from==null){if(S==0){let P=R.range(n,y.min,y.max,g);y.min=P[0],y.max=P[1]}if(y.min>y.max){let P=y.min;y.min=y.max,y.max=P}if(S>1&&y.min!=null&&y.max!=null&&y.max-y.min<1e-16)return;g==I&&R.distr==2&&S>0&&(y.min=hi(y.min,t[0]),y.max=hi(y.max,t[0]),y.min==y.max&&y.max++),j[g]=y,Vt=!0,Ws()}}n.setScale=cl;let hl,ul,Xs,Ys,gu,_u,qs,$s,xu,vu,Pe,Oe,Gi=!1,ln=At.drag,sn=ln.x,rn=ln.y;At.show&&(At.x&&(hl=$n(vM,x)),At.y&&(ul=$n(yM,x)),C.ori==0?(Xs=hl,Ys=ul):(Xs=ul,Ys=hl),Pe=At.left,Oe=At.top);let Ie=n.select=qe({show:!0,over:!0,left:0,width:0,top:0,height:0},i.select),Zs=Ie.show?$n(xM,Ie.over?x:_):null;function Co(g,y){if(Ie.show){for(let R in g)Ie[R]=g[R],R in pl&&Ne(Zs,R,g[R]);y!==!1&&on("setSelect")}}n.setSelect=Co;function pm(g,y){let R=w[g],P=Gt?Dt[g]:null;if(R.show)P&&Hh(P,Bs);else{P&&Bn(P,Bs);let F=Mi?He[0]:He[g];vi(F,-10,-10,v,B)}}function Wi(g,y,R){cl(g,{min:y,max:R})}function pi(g,y,R,P){y.focus!=null&&vm(g),y.show!=null&&w.forEach((F,X)=>{X>0&&(g==X||g==null)&&(F.show=y.show,pm(X,y.show),s==2?(Wi(F.facets[0].scale,null,null),Wi(F.facets[1].scale,null,null)):Wi(F.scale,null,null),Ws())}),R!==!1&&on("setSeries",g,y),P&&qr("setSeries",n,g,y)}n.setSeries=pi;function mm(g,y){qe(L[g],y)}function gm(g,y){g.fill=le(g.fill||null),g.dir=me(g.dir,-1),y=y??L.length,L.splice(y,0,g)}function _m(g){g==null?L.length=0:L.splice(g,1)}n.addBand=gm,n.setBand=mm,n.delBand=_m;function xm(g,y){w[g].alpha=y,At.show&&He[g]&&(He[g].style.opacity=y),Gt&&Dt[g]&&(Dt[g].style.opacity=y)}let wi,Xi,ds,Js={focus:!0};function vm(g){if(g!=ds){let y=g==null,R=en.alpha!=1;w.forEach((P,F)=>{if(s==1||F>0){let X=y||F==0||F==g;P._focus=y?null:X,R&&xm(F,X?1:en.alpha)}}),ds=g,R&&Ws()}}Gt&&yi&&Nt(Fd,ct,g=>{At._lock||(re(g),ds!=null&&pi(null,Js,!0,Ge.setSeries))});function mi(g,y,R){let P=D[y];R&&(g=g/_e-(P.ori==1?J:nt));let F=v;P.ori==1&&(F=B,g=F-g),P.dir==-1&&(g=F-g);let X=P._min,it=P._max,lt=g/F,pt=X+(it-X)*lt,Et=P.distr;return Et==3?Ur(10,pt):Et==4?FM(pt,P.asinh):Et==100?P.bwd(pt):pt}function ym(g,y){let R=mi(g,I,y);return hi(R,t[0],O,G)}n.valToIdx=g=>hi(g,t[0]),n.posToIdx=ym,n.posToVal=mi,n.valToPos=(g,y,R)=>D[y].ori==0?o(g,D[y],R?_t:v,R?Xt:0):a(g,D[y],R?Bt:B,R?at:0),n.setCursor=(g,y,R)=>{Pe=g.left,Oe=g.top,ps(null,y,R)};function yu(g,y){Ne(Zs,Ir,Ie.left=g),Ne(Zs,_o,Ie.width=y)}function Mu(g,y){Ne(Zs,mo,Ie.top=g),Ne(Zs,xo,Ie.height=y)}let Wr=C.ori==0?yu:Mu,Xr=C.ori==1?yu:Mu;function Mm(){if(Gt&&dt.live)for(let g=s==2?1:0;g<w.length;g++){if(g==0&&se)continue;let y=dt.values[g],R=0;for(let P in y)Ht[g][R++].firstChild.nodeValue=y[P]}}function fl(g,y){if(g!=null&&(g.idxs?g.idxs.forEach((R,P)=>{mt[P]=R}):VM(g.idx)||mt.fill(g.idx),dt.idx=mt[0]),Gt&&dt.live){for(let R=0;R<w.length;R++)(R>0||s==1&&!se)&&Sm(R,mt[R]);Mm()}U=!1,y!==!1&&on("setLegend")}n.setLegend=fl;function Sm(g,y){let R=w[g],P=g==0&&W==2?k:t[g],F;se?F=R.values(n,g,y)??jt:(F=R.value(n,y==null?null:P[y],g,y),F=F==null?jt:{_:F}),dt.values[g]=F}function ps(g,y,R){xu=Pe,vu=Oe,[Pe,Oe]=At.move(n,Pe,Oe),At.left=Pe,At.top=Oe,At.show&&(Xs&&vi(Xs,Ke(Pe),0,v,B),Ys&&vi(Ys,0,Ke(Oe),v,B));let P,F=O>G;wi=ce,Xi=null;let X=C.ori==0?v:B,it=C.ori==1?v:B;if(Pe<0||S==0||F){P=At.idx=null;for(let lt=0;lt<w.length;lt++){let pt=He[lt];pt!=null&&vi(pt,-10,-10,v,B)}yi&&pi(null,Js,!0,g==null&&Ge.setSeries),dt.live&&(mt.fill(P),U=!0)}else{let lt,pt,Et;s==1&&(lt=C.ori==0?Pe:Oe,pt=mi(lt,I),P=At.idx=hi(pt,t[0],O,G),Et=V(t[0][P],C,X,0));let Tt=-10,Rt=-10,$t=0,Ce=0,he=!0,oe="",Kt="";for(let kt=s==2?1:0;kt<w.length;kt++){let we=w[kt],ze=mt[kt],ke=ze==null?null:s==1?t[kt][ze]:t[kt][1][ze],Le=At.dataIdx(n,kt,P,pt),We=Le==null?null:s==1?t[kt][Le]:t[kt][1][Le];U=U||We!=ke||Le!=ze,mt[kt]=Le;let bn=Le==P?Et:V(s==1?t[0][Le]:t[kt][0][Le],C,X,0);if(kt>0&&we.show){let wn=We==null?-10:Y(We,s==1?D[we.scale]:D[we.facets[1].scale],it,0);if(yi&&We!=null){let Gn=C.ori==1?Pe:Oe,jn=je(en.dist(n,kt,Le,wn,Gn));if(jn<wi){let Qn=en.bias;if(Qn!=0){let _n=mi(Gn,we.scale),gi=We>=0?1:-1,xn=_n>=0?1:-1;xn==gi&&(xn==1?Qn==1?We>=_n:We<=_n:Qn==1?We<=_n:We>=_n)&&(wi=jn,Xi=kt)}else wi=jn,Xi=kt}}if(U||Mi){let Gn,jn;C.ori==0?(Gn=bn,jn=wn):(Gn=wn,jn=bn);let Qn,_n,gi,xn,vn,Pn,js=!0,qi=be.bbox;if(qi!=null){js=!1;let Wn=qi(n,kt);gi=Wn.left,xn=Wn.top,Qn=Wn.width,_n=Wn.height}else gi=Gn,xn=jn,Qn=_n=be.size(n,kt);if(Pn=be.fill(n,kt),vn=be.stroke(n,kt),Mi)kt==Xi&&wi<=en.prox&&(Tt=gi,Rt=xn,$t=Qn,Ce=_n,he=js,oe=Pn,Kt=vn);else{let Wn=He[kt];Wn!=null&&(ui[kt]=gi,Si[kt]=xn,Wd(Wn,Qn,_n,js),Hd(Wn,Pn,vn),vi(Wn,Zn(gi),Zn(xn),v,B))}}}}if(Mi){let kt=en.prox,we=ds==null?wi<=kt:wi>kt||Xi!=ds;if(U||we){let ze=He[0];ui[0]=Tt,Si[0]=Rt,Wd(ze,$t,Ce,he),Hd(ze,oe,Kt),vi(ze,Zn(Tt),Zn(Rt),v,B)}}}if(Ie.show&&Gi)if(g!=null){let[lt,pt]=Ge.scales,[Et,Tt]=Ge.match,[Rt,$t]=g.cursor.sync.scales,Ce=g.cursor.drag;if(sn=Ce._x,rn=Ce._y,sn||rn){let{left:he,top:oe,width:Kt,height:kt}=g.select,we=g.scales[Rt].ori,ze=g.posToVal,ke,Le,We,bn,wn,Gn=lt!=null&&Et(lt,Rt),jn=pt!=null&&Tt(pt,$t);Gn&&sn?(we==0?(ke=he,Le=Kt):(ke=oe,Le=kt),We=D[lt],bn=V(ze(ke,Rt),We,X,0),wn=V(ze(ke+Le,Rt),We,X,0),Wr(Jn(bn,wn),je(wn-bn))):Wr(0,X),jn&&rn?(we==1?(ke=he,Le=Kt):(ke=oe,Le=kt),We=D[pt],bn=Y(ze(ke,$t),We,it,0),wn=Y(ze(ke+Le,$t),We,it,0),Xr(Jn(bn,wn),je(wn-bn))):Xr(0,it)}else Ro()}else{let lt=je(xu-gu),pt=je(vu-_u);if(C.ori==1){let $t=lt;lt=pt,pt=$t}sn=ln.x&&lt>=ln.dist,rn=ln.y&&pt>=ln.dist;let Et=ln.uni;Et!=null?sn&&rn&&(sn=lt>=Et,rn=pt>=Et,!sn&&!rn&&(pt>lt?rn=!0:sn=!0)):ln.x&&ln.y&&(sn||rn)&&(sn=rn=!0);let Tt,Rt;sn&&(C.ori==0?(Tt=qs,Rt=Pe):(Tt=$s,Rt=Oe),Wr(Jn(Tt,Rt),je(Rt-Tt)),rn||Xr(0,it)),rn&&(C.ori==1?(Tt=qs,Rt=Pe):(Tt=$s,Rt=Oe),Xr(Jn(Tt,Rt),je(Rt-Tt)),sn||Wr(0,X)),!sn&&!rn&&(Wr(0,0),Xr(0,0))}if(ln._x=sn,ln._y=rn,g==null){if(R){if(Lu!=null){let[lt,pt]=Ge.scales;Ge.values[0]=lt!=null?mi(C.ori==0?Pe:Oe,lt):null,Ge.values[1]=pt!=null?mi(C.ori==1?Pe:Oe,pt):null}qr(Nd,n,Pe,Oe,v,B,P)}if(yi){let lt=R&&Ge.setSeries,pt=en.prox;ds==null?wi<=pt&&pi(Xi,Js,!0,lt):wi>pt?pi(null,Js,!0,lt):Xi!=ds&&pi(Xi,Js,!0,lt)}}U&&(dt.idx=P,fl()),y!==!1&&on("setCursor")}let Yi=null;Object.defineProperty(n,"rect",{get(){return Yi==null&&Yr(!1),Yi}});function Yr(g=!1){g?Yi=null:(Yi=x.getBoundingClientRect(),on("syncRect",Yi))}function Su(g,y,R,P,F,X,it){At._lock||Gi&&g!=null&&g.movementX==0&&g.movementY==0||(dl(g,y,R,P,F,X,it,!1,g!=null),g!=null?ps(null,!0,!0):ps(y,!0,!1))}function dl(g,y,R,P,F,X,it,lt,pt){if(Yi==null&&Yr(!1),re(g),g!=null)R=g.clientX-Yi.left,P=g.clientY-Yi.top;else{if(R<0||P<0){Pe=-10,Oe=-10;return}let[Et,Tt]=Ge.scales,Rt=y.cursor.sync,[$t,Ce]=Rt.values,[he,oe]=Rt.scales,[Kt,kt]=Ge.match,we=y.axes[0].side%2==1,ze=C.ori==0?v:B,ke=C.ori==1?v:B,Le=we?X:F,We=we?F:X,bn=we?P:R,wn=we?R:P;if(he!=null?R=Kt(Et,he)?l($t,D[Et],ze,0):-10:R=ze*(bn/Le),oe!=null?P=kt(Tt,oe)?l(Ce,D[Tt],ke,0):-10:P=ke*(wn/We),C.ori==1){let Gn=R;R=P,P=Gn}}pt&&((R<=1||R>=v-1)&&(R=Os(R,v)),(P<=1||P>=B-1)&&(P=Os(P,B))),lt?(gu=R,_u=P,[qs,$s]=At.move(n,R,P)):(Pe=R,Oe=P)}let pl={width:0,height:0,left:0,top:0};function Ro(){Co(pl,!1)}let bu,wu,Eu,Tu;function Au(g,y,R,P,F,X,it){Gi=!0,sn=rn=ln._x=ln._y=!1,dl(g,y,R,P,F,X,it,!0,!1),g!=null&&(Nt(Uh,zh,Cu,!1),qr(Ud,n,qs,$s,v,B,null));let{left:lt,top:pt,width:Et,height:Tt}=Ie;bu=lt,wu=pt,Eu=Et,Tu=Tt,Ro()}function Cu(g,y,R,P,F,X,it){Gi=ln._x=ln._y=!1,dl(g,y,R,P,F,X,it,!1,!0);let{left:lt,top:pt,width:Et,height:Tt}=Ie,Rt=Et>0||Tt>0,$t=bu!=lt||wu!=pt||Eu!=Et||Tu!=Tt;if(Rt&&$t&&Co(Ie),ln.setScale&&Rt&&$t){let Ce=lt,he=Et,oe=pt,Kt=Tt;if(C.ori==1&&(Ce=pt,he=Tt,oe=lt,Kt=Et),sn&&Wi(I,mi(Ce,I),mi(Ce+he,I)),rn)for(let kt in D){let we=D[kt];kt!=I&&we.from==null&&we.min!=ce&&Wi(kt,mi(oe+Kt,kt),mi(oe,kt))}Ro()}else At.lock&&(At._lock=!At._lock,ps(null,!0,!1));g!=null&&(xe(Uh,zh),qr(Uh,n,Pe,Oe,v,B,null))}function bm(g,y,R,P,F,X,it){if(At._lock)return;re(g);let lt=Gi;if(Gi){let pt=!0,Et=!0,Tt=10,Rt,$t;C.ori==0?(Rt=sn,$t=rn):(Rt=rn,$t=sn),Rt&&$t&&(pt=Pe<=Tt||Pe>=v-Tt,Et=Oe<=Tt||Oe>=B-Tt),Rt&&pt&&(Pe=Pe<qs?0:v),$t&&Et&&(Oe=Oe<$s?0:B),ps(null,!0,!0),Gi=!1}Pe=-10,Oe=-10,ps(null,!0,!0),lt&&(Gi=lt)}function Ru(g,y,R,P,F,X,it){At._lock||(re(g),Ut(),Ro(),g!=null&&qr(Bd,n,Pe,Oe,v,B,null))}function Pu(){b.forEach(ib),xt(n.width,n.height,!0)}ks(Ya,Dr,Pu);let Ks={};Ks.mousedown=Au,Ks.mousemove=Su,Ks.mouseup=Cu,Ks.dblclick=Ru,Ks.setSeries=(g,y,R,P)=>{let F=Ge.match[2];R=F(n,y,R),R!=-1&&pi(R,P,!0,!1)},At.show&&(Nt(Ud,x,Au),Nt(Nd,x,Su),Nt(Od,x,g=>{re(g),Yr(!1)}),Nt(Fd,x,bm),Nt(Bd,x,Ru),$h.add(n),n.syncRect=Yr);let Po=n.hooks=i.hooks||{};function on(g,y,R){ll?Gr.push([g,y,R]):g in Po&&Po[g].forEach(P=>{P.call(null,n,y,R)})}(i.plugins||[]).forEach(g=>{for(let y in g.hooks)Po[y]=(Po[y]||[]).concat(g.hooks[y])});let Iu=(g,y,R)=>R,Ge=qe({key:null,setSeries:!1,filters:{pub:Zd,sub:Zd},scales:[I,w[1]?w[1].scale:null],match:[Jd,Jd,Iu],values:[null,null]},At.sync);Ge.match.length==2&&Ge.match.push(Iu),At.sync=Ge;let Lu=Ge.key,ml=Hp(Lu);function qr(g,y,R,P,F,X,it){Ge.filters.pub(g,y,R,P,F,X,it)&&ml.pub(g,y,R,P,F,X,it)}ml.sub(n);function wm(g,y,R,P,F,X,it){Ge.filters.sub(g,y,R,P,F,X,it)&&Ks[g](null,y,R,P,F,X,it)}n.pub=wm;function Em(){ml.unsub(n),$h.delete(n),Zt.clear(),Gh(Ya,Dr,Pu),u.remove(),ct?.remove(),on("destroy")}n.destroy=Em;function gl(){on("init",i,t),Mt(t||i.data,!1),j[I]?cl(I,j[I]):Ut(),ge=Ie.show&&(Ie.width>0||Ie.height>0),Yt=U=!0,xt(i.width,i.height)}return w.forEach(cs),b.forEach(wo),e?e instanceof HTMLElement?(e.appendChild(u),gl()):e(n,gl):gl(),n}hn.assign=qe;hn.fmtNum=eu;hn.rangeNum=qa;hn.rangeLog=Za;hn.rangeAsinh=Qh;hn.orient=Vs;hn.pxRatio=_e;hn.join=$M;hn.fmtDate=iu,hn.tzDate=rS;hn.sync=Hp;{hn.addGap=VS,hn.clipGaps=ja;let i=hn.paths={points:$p};i.linear=Jp,i.stepped=WS,i.bars=XS,i.spline=qS}var tm=["#2f6fb7","#c9542b","#2e8b57","#8a5bb5","#b8860b","#c2408c","#4a9fb0","#777777"],sb=i=>tm[i%tm.length],nl=class{constructor(t){this.place=t,new ResizeObserver(()=>this.plot?.setSize({width:this.width(),height:260})).observe(t)}width(){return Math.max(200,this.place.clientWidth)}show(t,e,n){if(this.plot?.destroy(),this.plot=void 0,!n.length)return;let s=getComputedStyle(this.place),r={stroke:s.color,grid:{stroke:s.getPropertyValue("--line"),width:1},ticks:{stroke:s.getPropertyValue("--line"),width:1},font:`12px ${s.fontFamily}`,labelFont:`12px ${s.fontFamily}`},o={width:this.width(),height:260,scales:{x:{time:!1}},legend:{live:!1},axes:[{...r,label:t},{...r,size:80}],series:[{label:t},...n.map((a,l)=>({label:a.label,stroke:sb(l),width:2,points:{show:e.length<60,size:6}}))]};this.plot=new hn(o,[e,...n.map(a=>a.values)],this.place)}};var em={type:"change"},uu={type:"start"},im={type:"end"},il=new Ps,nm=new ii,rb=Math.cos(70*ld.DEG2RAD),tn=new H,Cn=2*Math.PI,Te={NONE:-1,ROTATE:0,DOLLY:1,PAN:2,TOUCH_ROTATE:3,TOUCH_PAN:4,TOUCH_DOLLY_PAN:5,TOUCH_DOLLY_ROTATE:6},hu=1e-6,sl=class extends Ia{constructor(t,e=null){super(t,e),this.state=Te.NONE,this.enabled=!0,this.target=new H,this.cursor=new H,this.minDistance=0,this.maxDistance=1/0,this.minZoom=0,this.maxZoom=1/0,this.minTargetRadius=0,this.maxTargetRadius=1/0,this.minPolarAngle=0,this.maxPolarAngle=Math.PI,this.minAzimuthAngle=-1/0,this.maxAzimuthAngle=1/0,this.enableDamping=!1,this.dampingFactor=.05,this.enableZoom=!0,this.zoomSpeed=1,this.enableRotate=!0,this.rotateSpeed=1,this.enablePan=!0,this.panSpeed=1,this.screenSpacePanning=!0,this.keyPanSpeed=7,this.zoomToCursor=!1,this.autoRotate=!1,this.autoRotateSpeed=2,this.keys={LEFT:"ArrowLeft",UP:"ArrowUp",RIGHT:"ArrowRight",BOTTOM:"ArrowDown"},this.mouseButtons={LEFT:Ds.ROTATE,MIDDLE:Ds.DOLLY,RIGHT:Ds.PAN},this.touches={ONE:Ns.ROTATE,TWO:Ns.DOLLY_PAN},this.target0=this.target.clone(),this.position0=this.object.position.clone(),this.zoom0=this.object.zoom,this._domElementKeyEvents=null,this._lastPosition=new H,this._lastQuaternion=new ai,this._lastTargetPosition=new H,this._quat=new ai().setFromUnitVectors(t.up,new H(0,1,0)),this._quatInverse=this._quat.clone().invert(),this._spherical=new fo,this._sphericalDelta=new fo,this._scale=1,this._panOffset=new H,this._rotateStart=new ie,this._rotateEnd=new ie,this._rotateDelta=new ie,this._panStart=new ie,this._panEnd=new ie,this._panDelta=new ie,this._dollyStart=new ie,this._dollyEnd=new ie,this._dollyDelta=new ie,this._dollyDirection=new H,this._mouse=new ie,this._performCursorZoom=!1,this._pointers=[],this._pointerPositions={},this._controlActive=!1,this._onPointerMove=ab.bind(this),this._onPointerDown=ob.bind(this),this._onPointerUp=lb.bind(this),this._onContextMenu=mb.bind(this),this._onMouseWheel=ub.bind(this),this._onKeyDown=fb.bind(this),this._onTouchStart=db.bind(this),this._onTouchMove=pb.bind(this),this._onMouseDown=cb.bind(this),this._onMouseMove=hb.bind(this),this._interceptControlDown=gb.bind(this),this._interceptControlUp=_b.bind(this),this.domElement!==null&&this.connect(),this.update()}connect(){this.domElement.addEventListener("pointerdown",this._onPointerDown),this.domElement.addEventListener("pointercancel",this._onPointerUp),this.domElement.addEventListener("contextmenu",this._onContextMenu),this.domElement.addEventListener("wheel",this._onMouseWheel,{passive:!1}),this.domElement.getRootNode().addEventListener("keydown",this._interceptControlDown,{passive:!0,capture:!0}),this.domElement.style.touchAction="none"}disconnect(){this.domElement.removeEventListener("pointerdown",this._onPointerDown),this.domElement.removeEventListener("pointermove",this._onPointerMove),this.domElement.removeEventListener("pointerup",this._onPointerUp),this.domElement.removeEventListener("pointercancel",this._onPointerUp),this.domElement.removeEventListener("wheel",this._onMouseWheel),this.domElement.removeEventListener("contextmenu",this._onContextMenu),this.stopListenToKeyEvents(),this.domElement.getRootNode().removeEventListener("keydown",this._interceptControlDown,{capture:!0}),this.domElement.style.touchAction="auto"}dispose(){this.disconnect()}getPolarAngle(){return this._spherical.phi}getAzimuthalAngle(){return this._spherical.theta}getDistance(){return this.object.position.distanceTo(this.target)}listenToKeyEvents(t){t.addEventListener("keydown",this._onKeyDown),this._domElementKeyEvents=t}stopListenToKeyEvents(){this._domElementKeyEvents!==null&&(this._domElementKeyEvents.removeEventListener("keydown",this._onKeyDown),this._domElementKeyEvents=null)}saveState(){this.target0.copy(this.target),this.position0.copy(this.object.position),this.zoom0=this.object.zoom}reset(){this.target.copy(this.target0),this.object.position.copy(this.position0),this.object.zoom=this.zoom0,this.object.updateProjectionMatrix(),this.dispatchEvent(em),this.update(),this.state=Te.NONE}update(t=null){let e=this.object.position;tn.copy(e).sub(this.target),tn.applyQuaternion(this._quat),this._spherical.setFromVector3(tn),this.autoRotate&&this.state===Te.NONE&&this._rotateLeft(this._getAutoRotationAngle(t)),this.enableDamping?(this._spherical.theta+=this._sphericalDelta.theta*this.dampingFactor,this._spherical.phi+=this._sphericalDelta.phi*this.dampingFactor):(this._spherical.theta+=this._sphericalDelta.theta,this._spherical.phi+=this._sphericalDelta.phi);let n=this.minAzimuthAngle,s=this.maxAzimuthAngle;isFinite(n)&&isFinite(s)&&(n<-Math.PI?n+=Cn:n>Math.PI&&(n-=Cn),s<-Math.PI?s+=Cn:s>Math.PI&&(s-=Cn),n<=s?this._spherical.theta=Math.max(n,Math.min(s,this._spherical.theta)):this._spherical.theta=this._spherical.theta>(n+s)/2?Math.max(n,this._spherical.theta):Math.min(s,this._spherical.theta)),this._spherical.phi=Math.max(this.minPolarAngle,Math.min(this.maxPolarAngle,this._spherical.phi)),this._spherical.makeSafe(),this.enableDamping===!0?this.target.addScaledVector(this._panOffset,this.dampingFactor):this.target.add(this._panOffset),this.target.sub(this.cursor),this.target.clampLength(this.minTargetRadius,this.maxTargetRadius),this.target.add(this.cursor);let r=!1;if(this.zoomToCursor&&this._performCursorZoom||this.object.isOrthographicCamera)this._spherical.radius=this._clampDistance(this._spherical.radius);else{let o=this._spherical.radius;this._spherical.radius=this._clampDistance(this._spherical.radius*this._scale),r=o!=this._spherical.radius}if(tn.setFromSpherical(this._spherical),tn.applyQuaternion(this._quatInverse),e.copy(this.target).add(tn),this.object.lookAt(this.target),this.enableDamping===!0?(this._sphericalDelta.theta*=1-this.dampingFactor,this._sphericalDelta.phi*=1-this.dampingFactor,this._panOffset.multiplyScalar(1-this.dampingFactor)):(this._sphericalDelta.set(0,0,0),this._panOffset.set(0,0,0)),this.zoomToCursor&&this._performCursorZoom){let o=null;if(this.object.isPerspectiveCamera){let a=tn.length();o=this._clampDistance(a*this._scale);let l=a-o;this.object.position.addScaledVector(this._dollyDirection,l),this.object.updateMatrixWorld(),r=!!l}else if(this.object.isOrthographicCamera){let a=new H(this._mouse.x,this._mouse.y,0);a.unproject(this.object);let l=this.object.zoom;this.object.zoom=Math.max(this.minZoom,Math.min(this.maxZoom,this.object.zoom/this._scale)),this.object.updateProjectionMatrix(),r=l!==this.object.zoom;let c=new H(this._mouse.x,this._mouse.y,0);c.unproject(this.object),this.object.position.sub(c).add(a),this.object.updateMatrixWorld(),o=tn.length()}else console.warn("WARNING: OrbitControls.js encountered an unknown camera type - zoom to cursor disabled."),this.zoomToCursor=!1;o!==null&&(this.screenSpacePanning?this.target.set(0,0,-1).transformDirection(this.object.matrix).multiplyScalar(o).add(this.object.position):(il.origin.copy(this.object.position),il.direction.set(0,0,-1).transformDirection(this.object.matrix),Math.abs(this.object.up.dot(il.direction))<rb?this.object.lookAt(this.target):(nm.setFromNormalAndCoplanarPoint(this.object.up,this.target),il.intersectPlane(nm,this.target))))}else if(this.object.isOrthographicCamera){let o=this.object.zoom;this.object.zoom=Math.max(this.minZoom,Math.min(this.maxZoom,this.object.zoom/this._scale)),o!==this.object.zoom&&(this.object.updateProjectionMatrix(),r=!0)}return this._scale=1,this._performCursorZoom=!1,r||this._lastPosition.distanceToSquared(this.object.position)>hu||8*(1-this._lastQuaternion.dot(this.object.quaternion))>hu||this._lastTargetPosition.distanceToSquared(this.target)>hu?(this.dispatchEvent(em),this._lastPosition.copy(this.object.position),this._lastQuaternion.copy(this.object.quaternion),this._lastTargetPosition.copy(this.target),!0):!1}_getAutoRotationAngle(t){return t!==null?Cn/60*this.autoRotateSpeed*t:Cn/60/60*this.autoRotateSpeed}_getZoomScale(t){let e=Math.abs(t*.01);return Math.pow(.95,this.zoomSpeed*e)}_rotateLeft(t){this._sphericalDelta.theta-=t}_rotateUp(t){this._sphericalDelta.phi-=t}_panLeft(t,e){tn.setFromMatrixColumn(e,0),tn.multiplyScalar(-t),this._panOffset.add(tn)}_panUp(t,e){this.screenSpacePanning===!0?tn.setFromMatrixColumn(e,1):(tn.setFromMatrixColumn(e,0),tn.crossVectors(this.object.up,tn)),tn.multiplyScalar(t),this._panOffset.add(tn)}_pan(t,e){let n=this.domElement;if(this.object.isPerspectiveCamera){let s=this.object.position;tn.copy(s).sub(this.target);let r=tn.length();r*=Math.tan(this.object.fov/2*Math.PI/180),this._panLeft(2*t*r/n.clientHeight,this.object.matrix),this._panUp(2*e*r/n.clientHeight,this.object.matrix)}else this.object.isOrthographicCamera?(this._panLeft(t*(this.object.right-this.object.left)/this.object.zoom/n.clientWidth,this.object.matrix),this._panUp(e*(this.object.top-this.object.bottom)/this.object.zoom/n.clientHeight,this.object.matrix)):(console.warn("WARNING: OrbitControls.js encountered an unknown camera type - pan disabled."),this.enablePan=!1)}_dollyOut(t){this.object.isPerspectiveCamera||this.object.isOrthographicCamera?this._scale/=t:(console.warn("WARNING: OrbitControls.js encountered an unknown camera type - dolly/zoom disabled."),this.enableZoom=!1)}_dollyIn(t){this.object.isPerspectiveCamera||this.object.isOrthographicCamera?this._scale*=t:(console.warn("WARNING: OrbitControls.js encountered an unknown camera type - dolly/zoom disabled."),this.enableZoom=!1)}_updateZoomParameters(t,e){if(!this.zoomToCursor)return;this._performCursorZoom=!0;let n=this.domElement.getBoundingClientRect(),s=t-n.left,r=e-n.top,o=n.width,a=n.height;this._mouse.x=s/o*2-1,this._mouse.y=-(r/a)*2+1,this._dollyDirection.set(this._mouse.x,this._mouse.y,1).unproject(this.object).sub(this.object.position).normalize()}_clampDistance(t){return Math.max(this.minDistance,Math.min(this.maxDistance,t))}_handleMouseDownRotate(t){this._rotateStart.set(t.clientX,t.clientY)}_handleMouseDownDolly(t){this._updateZoomParameters(t.clientX,t.clientX),this._dollyStart.set(t.clientX,t.clientY)}_handleMouseDownPan(t){this._panStart.set(t.clientX,t.clientY)}_handleMouseMoveRotate(t){this._rotateEnd.set(t.clientX,t.clientY),this._rotateDelta.subVectors(this._rotateEnd,this._rotateStart).multiplyScalar(this.rotateSpeed);let e=this.domElement;this._rotateLeft(Cn*this._rotateDelta.x/e.clientHeight),this._rotateUp(Cn*this._rotateDelta.y/e.clientHeight),this._rotateStart.copy(this._rotateEnd),this.update()}_handleMouseMoveDolly(t){this._dollyEnd.set(t.clientX,t.clientY),this._dollyDelta.subVectors(this._dollyEnd,this._dollyStart),this._dollyDelta.y>0?this._dollyOut(this._getZoomScale(this._dollyDelta.y)):this._dollyDelta.y<0&&this._dollyIn(this._getZoomScale(this._dollyDelta.y)),this._dollyStart.copy(this._dollyEnd),this.update()}_handleMouseMovePan(t){this._panEnd.set(t.clientX,t.clientY),this._panDelta.subVectors(this._panEnd,this._panStart).multiplyScalar(this.panSpeed),this._pan(this._panDelta.x,this._panDelta.y),this._panStart.copy(this._panEnd),this.update()}_handleMouseWheel(t){this._updateZoomParameters(t.clientX,t.clientY),t.deltaY<0?this._dollyIn(this._getZoomScale(t.deltaY)):t.deltaY>0&&this._dollyOut(this._getZoomScale(t.deltaY)),this.update()}_handleKeyDown(t){let e=!1;switch(t.code){case this.keys.UP:t.ctrlKey||t.metaKey||t.shiftKey?this._rotateUp(Cn*this.rotateSpeed/this.domElement.clientHeight):this._pan(0,this.keyPanSpeed),e=!0;break;case this.keys.BOTTOM:t.ctrlKey||t.metaKey||t.shiftKey?this._rotateUp(-Cn*this.rotateSpeed/this.domElement.clientHeight):this._pan(0,-this.keyPanSpeed),e=!0;break;case this.keys.LEFT:t.ctrlKey||t.metaKey||t.shiftKey?this._rotateLeft(Cn*this.rotateSpeed/this.domElement.clientHeight):this._pan(this.keyPanSpeed,0),e=!0;break;case this.keys.RIGHT:t.ctrlKey||t.metaKey||t.shiftKey?this._rotateLeft(-Cn*this.rotateSpeed/this.domElement.clientHeight):this._pan(-this.keyPanSpeed,0),e=!0;break}e&&(t.preventDefault(),this.update())}_handleTouchStartRotate(t){if(this._pointers.length===1)this._rotateStart.set(t.pageX,t.pageY);else{let e=this._getSecondPointerPosition(t),n=.5*(t.pageX+e.x),s=.5*(t.pageY+e.y);this._rotateStart.set(n,s)}}_handleTouchStartPan(t){if(this._pointers.length===1)this._panStart.set(t.pageX,t.pageY);else{let e=this._getSecondPointerPosition(t),n=.5*(t.pageX+e.x),s=.5*(t.pageY+e.y);this._panStart.set(n,s)}}_handleTouchStartDolly(t){let e=this._getSecondPointerPosition(t),n=t.pageX-e.x,s=t.pageY-e.y,r=Math.sqrt(n*n+s*s);this._dollyStart.set(0,r)}_handleTouchStartDollyPan(t){this.enableZoom&&this._handleTouchStartDolly(t),this.enablePan&&this._handleTouchStartPan(t)}_handleTouchStartDollyRotate(t){this.enableZoom&&this._handleTouchStartDolly(t),this.enableRotate&&this._handleTouchStartRotate(t)}_handleTouchMoveRotate(t){if(this._pointers.length==1)this._rotateEnd.set(t.pageX,t.pageY);else{let n=this._getSecondPointerPosition(t),s=.5*(t.pageX+n.x),r=.5*(t.pageY+n.y);this._rotateEnd.set(s,r)}this._rotateDelta.subVectors(this._rotateEnd,this._rotateStart).multiplyScalar(this.rotateSpeed);let e=this.domElement;this._rotateLeft(Cn*this._rotateDelta.x/e.clientHeight),this._rotateUp(Cn*this._rotateDelta.y/e.clientHeight),this._rotateStart.copy(this._rotateEnd)}_handleTouchMovePan(t){if(this._pointers.length===1)this._panEnd.set(t.pageX,t.pageY);else{let e=this._getSecondPointerPosition(t),n=.5*(t.pageX+e.x),s=.5*(t.pageY+e.y);this._panEnd.set(n,s)}this._panDelta.subVectors(this._panEnd,this._panStart).multiplyScalar(this.panSpeed),this._pan(this._panDelta.x,this._panDelta.y),this._panStart.copy(this._panEnd)}_handleTouchMoveDolly(t){let e=this._getSecondPointerPosition(t),n=t.pageX-e.x,s=t.pageY-e.y,r=Math.sqrt(n*n+s*s);this._dollyEnd.set(0,r),this._dollyDelta.set(0,Math.pow(this._dollyEnd.y/this._dollyStart.y,this.zoomSpeed)),this._dollyOut(this._dollyDelta.y),this._dollyStart.copy(this._dollyEnd);let o=(t.pageX+e.x)*.5,a=(t.pageY+e.y)*.5;this._updateZoomParameters(o,a)}_handleTouchMoveDollyPan(t){this.enableZoom&&this._handleTouchMoveDolly(t),this.enablePan&&this._handleTouchMovePan(t)}_handleTouchMoveDollyRotate(t){this.enableZoom&&this._handleTouchMoveDolly(t),this.enableRotate&&this._handleTouchMoveRotate(t)}_addPointer(t){this._pointers.push(t.pointerId)}_removePointer(t){delete this._pointerPositions[t.pointerId];for(let e=0;e<this._pointers.length;e++)if(this._pointers[e]==t.pointerId){this._pointers.splice(e,1);return}}_isTrackingPointer(t){for(let e=0;e<this._pointers.length;e++)if(this._pointers[e]==t.pointerId)return!0;return!1}_trackPointer(t){let e=this._pointerPositions[t.pointerId];e===void 0&&(e=new ie,this._pointerPositions[t.pointerId]=e),e.set(t.pageX,t.pageY)}_getSecondPointerPosition(t){let e=t.pointerId===this._pointers[0]?this._pointers[1]:this._pointers[0];return this._pointerPositions[e]}_customWheelEvent(t){let e=t.deltaMode,n={clientX:t.clientX,clientY:t.clientY,deltaY:t.deltaY};switch(e){case 1:n.deltaY*=16;break;case 2:n.deltaY*=100;break}return t.ctrlKey&&!this._controlActive&&(n.deltaY*=10),n}};function ob(i){this.enabled!==!1&&(this._pointers.length===0&&(this.domElement.setPointerCapture(i.pointerId),this.domElement.addEventListener("pointermove",this._onPointerMove),this.domElement.addEventListener("pointerup",this._onPointerUp)),!this._isTrackingPointer(i)&&(this._addPointer(i),i.pointerType==="touch"?this._onTouchStart(i):this._onMouseDown(i)))}function ab(i){this.enabled!==!1&&(i.pointerType==="touch"?this._onTouchMove(i):this._onMouseMove(i))}function lb(i){switch(this._removePointer(i),this._pointers.length){case 0:this.domElement.releasePointerCapture(i.pointerId),this.domElement.removeEventListener("pointermove",this._onPointerMove),this.domElement.removeEventListener("pointerup",this._onPointerUp),this.dispatchEvent(im),this.state=Te.NONE;break;case 1:let t=this._pointers[0],e=this._pointerPositions[t];this._onTouchStart({pointerId:t,pageX:e.x,pageY:e.y});break}}function cb(i){let t;switch(i.button){case 0:t=this.mouseButtons.LEFT;break;case 1:t=this.mouseButtons.MIDDLE;break;case 2:t=this.mouseButtons.RIGHT;break;default:t=-1}switch(t){case Ds.DOLLY:if(this.enableZoom===!1)return;this._handleMouseDownDolly(i),this.state=Te.DOLLY;break;case Ds.ROTATE:if(i.ctrlKey||i.metaKey||i.shiftKey){if(this.enablePan===!1)return;this._handleMouseDownPan(i),this.state=Te.PAN}else{if(this.enableRotate===!1)return;this._handleMouseDownRotate(i),this.state=Te.ROTATE}break;case Ds.PAN:if(i.ctrlKey||i.metaKey||i.shiftKey){if(this.enableRotate===!1)return;this._handleMouseDownRotate(i),this.state=Te.ROTATE}else{if(this.enablePan===!1)return;this._handleMouseDownPan(i),this.state=Te.PAN}break;default:this.state=Te.NONE}this.state!==Te.NONE&&this.dispatchEvent(uu)}function hb(i){switch(this.state){case Te.ROTATE:if(this.enableRotate===!1)return;this._handleMouseMoveRotate(i);break;case Te.DOLLY:if(this.enableZoom===!1)return;this._handleMouseMoveDolly(i);break;case Te.PAN:if(this.enablePan===!1)return;this._handleMouseMovePan(i);break}}function ub(i){this.enabled===!1||this.enableZoom===!1||this.state!==Te.NONE||(i.preventDefault(),this.dispatchEvent(uu),this._handleMouseWheel(this._customWheelEvent(i)),this.dispatchEvent(im))}function fb(i){this.enabled===!1||this.enablePan===!1||this._handleKeyDown(i)}function db(i){switch(this._trackPointer(i),this._pointers.length){case 1:switch(this.touches.ONE){case Ns.ROTATE:if(this.enableRotate===!1)return;this._handleTouchStartRotate(i),this.state=Te.TOUCH_ROTATE;break;case Ns.PAN:if(this.enablePan===!1)return;this._handleTouchStartPan(i),this.state=Te.TOUCH_PAN;break;default:this.state=Te.NONE}break;case 2:switch(this.touches.TWO){case Ns.DOLLY_PAN:if(this.enableZoom===!1&&this.enablePan===!1)return;this._handleTouchStartDollyPan(i),this.state=Te.TOUCH_DOLLY_PAN;break;case Ns.DOLLY_ROTATE:if(this.enableZoom===!1&&this.enableRotate===!1)return;this._handleTouchStartDollyRotate(i),this.state=Te.TOUCH_DOLLY_ROTATE;break;default:this.state=Te.NONE}break;default:this.state=Te.NONE}this.state!==Te.NONE&&this.dispatchEvent(uu)}function pb(i){switch(this._trackPointer(i),this.state){case Te.TOUCH_ROTATE:if(this.enableRotate===!1)return;this._handleTouchMoveRotate(i),this.update();break;case Te.TOUCH_PAN:if(this.enablePan===!1)return;this._handleTouchMovePan(i),this.update();break;case Te.TOUCH_DOLLY_PAN:if(this.enableZoom===!1&&this.enablePan===!1)return;this._handleTouchMoveDollyPan(i),this.update();break;case Te.TOUCH_DOLLY_ROTATE:if(this.enableZoom===!1&&this.enableRotate===!1)return;this._handleTouchMoveDollyRotate(i),this.update();break;default:this.state=Te.NONE}}function mb(i){this.enabled!==!1&&i.preventDefault()}function gb(i){i.key==="Control"&&(this._controlActive=!0,this.domElement.getRootNode().addEventListener("keyup",this._interceptControlUp,{passive:!0,capture:!0}))}function _b(i){i.key==="Control"&&(this._controlActive=!1,this.domElement.getRootNode().removeEventListener("keyup",this._interceptControlUp,{passive:!0,capture:!0}))}var du=`
uniform float factor;
varying vec3 rest;
vec4 placed(vec3 displacement) { rest = position; return modelViewMatrix * vec4(position + factor * displacement, 1.0); }`,pu=`
uniform vec4 cut;
varying vec3 rest;
bool isCutOff() { return dot(cut.xyz, rest) > cut.w; }`,xb=`${du}
attribute vec3 displacement;
attribute float place;
varying float colour;
varying vec3 seen;
void main() { vec4 p = placed(displacement); seen = p.xyz; colour = place; gl_Position = projectionMatrix * p; }`,vb=`${pu}
uniform sampler2D colours;
uniform vec3 none;
varying float colour;
varying vec3 seen;
void main() {
  if (isCutOff()) discard;
  vec3 normal = normalize(cross(dFdx(seen), dFdy(seen)));
  vec3 base = colour > 1e6 ? none : texture2D(colours, vec2(clamp(colour, 0.0, 1.0), 0.5)).rgb;
  gl_FragColor = vec4(base * (0.68 + 0.32 * abs(normal.z)), 1.0);
}`,yb=`${du}
attribute vec3 displacement;
void main() { gl_Position = projectionMatrix * placed(displacement); }`,Mb=`${pu}
uniform vec4 ink;
void main() { if (isCutOff()) discard; gl_FragColor = ink; }`,Sb=`${du}
attribute vec3 displacement;
attribute vec3 ink;
uniform float size;
varying vec3 colour;
void main() {
  gl_Position = projectionMatrix * placed(displacement);
  gl_Position.z -= 8e-4 * gl_Position.w;
  gl_PointSize = size;
  colour = ink;
}`,bb=`${pu}
varying vec3 colour;
void main() {
  float radius = length(gl_PointCoord - 0.5);
  if (isCutOff() || radius > 0.5) discard;
  gl_FragColor = vec4(radius > 0.36 ? vec3(1.0) : colour, 1.0);
}`,sm={value:new De(0,0,0,1)},rm={iso:[1,-1,1],front:[0,-1,0],back:[0,1,0],right:[1,0,0],left:[-1,0,0],top:[0,0,1],bottom:[0,0,-1]},om=Object.keys(rm),fu=class{constructor(t,e){this.model=t,this.scene=new Ea,this.factor={value:0},this.colours={value:new Ta(new Uint8Array(1024),256,1)},this.colours.value.magFilter=this.colours.value.minFilter=qn,this.geometry=t.makeFaceGeometry();let n=(r,o)=>new An({vertexShader:xb,fragmentShader:vb,side:si,polygonOffset:!0,polygonOffsetFactor:o,polygonOffsetUnits:o,uniforms:{factor:this.factor,colours:this.colours,cut:r,none:e.none}}),s=r=>new An({vertexShader:yb,fragmentShader:Mb,transparent:!0,depthWrite:!1,uniforms:{factor:this.factor,cut:r,ink:e.ink}});this.lineMaterial=s(e.cut),this.add(new En(this.geometry,[n(e.cut,2)])),this.section=new En(new cn,n(sm,1)),this.sectionLines=new uo(new cn,s(sm)),this.discs=new Ra(new cn,new An({vertexShader:Sb,fragmentShader:bb,uniforms:{factor:this.factor,cut:e.cut,size:e.discSize}})),this.discNodes=[];for(let r of[this.section,this.sectionLines,this.discs])r.visible=!1,this.add(r);this.lines=new Map,this.displacements=null,this.places=t.points}add(t){t.frustumCulled=!1,this.scene.add(t)}showLines(t){if(t!=="none"&&!this.lines.has(t)){let{edges:e,rows:n}=t==="mesh"?{edges:this.model.edges,rows:this.model.parts.map(o=>o.edges)}:this.model.outline(),s=this.model.makePointGeometry(e),r=new uo(s,[this.lineMaterial]);this.model.setDisplacements(s,e,this.displacements),this.model.setLineGroups(s,n),this.lines.set(t,{edges:e,rows:n,geometry:s,object:r}),this.add(r)}for(let[e,{object:n}]of this.lines)n.visible=e===t;this.hasSectionLines=t==="mesh",this.sectionLines.visible=this.hasSectionLines&&this.section.visible}showSection(){let{section:t}=this.model,e=t!==void 0&&t.corners.length>0;if(this.section.visible=e,this.sectionLines.visible=e&&this.hasSectionLines,!!e){for(let[n,s]of[[this.section,t.corners],[this.sectionLines,t.ends]])n.geometry.dispose(),n.geometry=new cn,n.geometry.setAttribute("position",new Be(t.interpolate(s,this.model.columns),3));this.deformSection(),this.colourSection()}}deformSection(){let{section:t}=this.model;if(!this.section.visible)return;for(let[s,r]of[[this.section,t.corners],[this.sectionLines,t.ends]]){let o=this.displacements?t.interpolate(r,this.displacements):new Float32Array(3*r.length);s.geometry.setAttribute("displacement",new Be(o,3))}let e=this.section.geometry.getAttribute("position").array,n=this.section.geometry.getAttribute("displacement").array;this.sectionPlaces=e.map((s,r)=>s+(this.factor.value*n[r]||0))}colourSection(){let{section:t,solidElements:e}=this.model;if(!this.section.visible||!this.shown)return;let{ofElements:n,values:s,placeOf:r}=this.shown,o=s?n?t.corners.solids.map(a=>s[e[a]]):t.interpolate(t.corners,[s]):new Float32Array(t.corners.length).fill(NaN);this.section.geometry.setAttribute("place",new Be(Ph(o,r),1))}pickSection(t,e){if(!this.section.visible)return null;let n=null;for(let s=0;s<this.model.section.corners.length;s+=3){let r=Ih(null,s,t,e,this.sectionPlaces,n?.distance??1/0);r&&(n={triangle:s/3,...r})}return n}showDiscs(t,e){this.discs.geometry.dispose(),this.discs.geometry=this.model.makePointGeometry(t),this.discs.geometry.setAttribute("ink",new Be(Float32Array.from(e),3)),this.discs.visible=t.length>0,this.discNodes=t,this.model.setDisplacements(this.discs.geometry,t,this.displacements)}showParts(){this.model.setGroups(this.geometry);for(let{geometry:t,rows:e}of this.lines.values())this.model.setLineGroups(t,e)}deform(t,e){if(t!==this.displacements){this.displacements=t,this.model.setDisplacements(this.geometry,this.model.cornerPoints,t);for(let{geometry:n,edges:s}of this.lines.values())this.model.setDisplacements(n,s,t);this.model.setDisplacements(this.discs.geometry,this.discNodes,t)}this.factor.value=e,this.places=this.model.deformed(t,e),this.deformSection()}colour(t,e,n){let s=o=>n.length>0?(o-n.first)/n.length:o===o?.5:NaN;this.model.setPlaces(this.geometry,t,e,s),this.shown={ofElements:t,values:e,placeOf:s},this.colourSection();let r=this.colours.value;r.image.data.set(n.table(256)),r.needsUpdate=!0}dispose(){this.geometry.dispose(),this.colours.value.dispose();for(let{geometry:t}of[this.section,this.sectionLines,this.discs,...this.lines.values()])t.dispose()}},rl=class{constructor(t,e,n){this.canvas=t,this.model=e,this.ondraw=n,this.renderer=new wa({canvas:t,antialias:!0,alpha:!0,preserveDrawingBuffer:!0}),this.renderer.outputColorSpace=rs,this.renderer.autoClear=!1,this.camera=new ho(-1,1,1,-1,-10*e.size,10*e.size),this.camera.up.set(0,0,1),this.controls=new sl(this.camera,t),this.controls.zoomToCursor=!1,this.controls.addEventListener("change",()=>this.draw()),this.shared={cut:{value:new De(0,0,0,1)},none:{value:new H},ink:{value:new De},discSize:{value:1}},this.panes=[],this.discs=[[],[]],this.plane=null,this.lines="outline",this.setPanes(1),this.look("iso"),new ResizeObserver(()=>this.draw()).observe(t)}setPanes(t){for(;this.panes.length>t;)this.panes.pop().dispose();for(;this.panes.length<t;)this.panes.push(new fu(this.model,this.shared));for(let e of this.panes)e.showDiscs(...this.discs);this.showLines(this.lines),this.showSection()}showSection(){this.model.cut(this.plane);for(let t of this.panes)t.showSection();this.draw()}showDiscs(t,e){this.discs=[t,e];for(let n of this.panes)n.showDiscs(t,e);this.draw()}showLines(t){this.lines=t;for(let e of this.panes)e.showLines(t);this.draw()}showParts(){for(let t of this.panes)t.showParts();this.showSection()}setInk(t){this.shared.ink.value.set(...t?[.02,.02,.04,.6]:[.05,.05,.07,.55]),this.shared.none.value.set(...t?[.42,.43,.46]:[.72,.73,.75]),this.draw()}cut(t){this.plane=t,this.shared.cut.value.set(...t??[0,0,0,1]),this.showSection()}get reach(){return .62*this.model.size}look(t){let e=new H(...rm[t]).normalize();Math.abs(e.z)===1&&(e.y=-1e-4*e.z),this.camera.zoom=1,this.controls.target.set(...[0,1,2].map(n=>(this.model.least[n]+this.model.greatest[n])/2)),this.camera.position.copy(this.controls.target).addScaledVector(e,this.model.size),this.controls.update(),this.draw()}flyTo(t){let e=new H(...t).sub(this.controls.target);this.controls.target.add(e),this.camera.position.add(e),this.camera.zoom=Math.max(this.camera.zoom,3),this.controls.update(),this.draw()}turn(t,e){let n=this.camera.position.clone().sub(this.controls.target),s=n.length(),r=Math.atan2(n.y,n.x)+t*Math.PI/180,o=Math.PI/2-.001,a=Math.asin(n.z/s)+e*Math.PI/180,l=Math.max(-o,Math.min(o,a));n.set(Math.cos(l)*Math.cos(r),Math.cos(l)*Math.sin(r),Math.sin(l)),this.camera.position.copy(this.controls.target).addScaledVector(n,s),this.controls.update(),this.draw()}pan(t,e){let{x:n,y:s}=this.axes(),r=2*this.reach/this.camera.zoom,o=n.multiplyScalar(-t*r).addScaledVector(s,-e*r);this.controls.target.add(o),this.camera.position.add(o),this.controls.update(),this.draw()}zoom(t){this.camera.zoom=Math.max(.05,Math.min(1e3,this.camera.zoom*t)),this.camera.updateProjectionMatrix(),this.draw()}axes(){this.camera.updateMatrixWorld();let[t,e,n]=[new H,new H,new H];return this.camera.matrixWorld.extractBasis(t,e,n),{x:t,y:e,z:n}}areas(){let{clientWidth:t,clientHeight:e}=this.canvas,n=this.panes.length,s=e>t,[r,o]=s?[t,Math.floor(e/n)]:[Math.floor(t/n),e];return this.panes.map((a,l)=>({left:s?0:l*r,top:s?l*o:0,width:r,height:o}))}draw(){this.isWaiting||(this.isWaiting=!0,requestAnimationFrame(()=>{this.isWaiting=!1,this.drawNow()}))}drawNow(){let{clientWidth:t,clientHeight:e}=this.canvas;if(!t||!e)return;let n=Math.min(devicePixelRatio,2);this.shared.discSize.value=9*n,this.renderer.getPixelRatio()!==n&&this.renderer.setPixelRatio(n),(this.width!==t||this.height!==e)&&(this.renderer.setSize(t,e,!1),[this.width,this.height]=[t,e]);let s=this.areas();this.setFrustum(s[0]),this.renderer.setScissorTest(!1),this.renderer.clear(),this.renderer.setScissorTest(!0),this.panes.forEach((r,o)=>{let{left:a,top:l,width:c,height:u}=s[o],f=[a,e-l-u,c,u];this.renderer.setViewport(...f),this.renderer.setScissor(...f),this.renderer.render(r.scene,this.camera)}),this.ondraw()}setFrustum({width:t,height:e}){let n=t/e,s=this.reach*Math.max(1,1/n);Object.assign(this.camera,{left:-s*n,right:s*n,top:s,bottom:-s}),this.camera.updateProjectionMatrix(),this.camera.updateMatrixWorld()}project(t,e){let n=this.areas()[e],s=new H(...t).project(this.camera);return{x:n.left+(s.x+1)/2*n.width,y:n.top+(1-s.y)/2*n.height}}ray(t,e,n){let s=[2*(t-n.left)/n.width-1,1-2*(e-n.top)/n.height],{z:r}=this.axes();return{origin:new H(...s,0).unproject(this.camera).addScaledVector(r,4*this.model.size).toArray(),direction:r.negate().toArray()}}pick(t,e){let n=this.areas(),s=n.findIndex(({left:c,top:u,width:f,height:h})=>t>=c&&t<c+f&&e>=u&&e<u+h);if(s<0)return null;let{origin:r,direction:o}=this.ray(t,e,n[s]),a=this.model.pick(r,o,this.panes[s].places,this.plane),l=this.panes[s].pickSection(r,o);return!l||a&&a.distance<l.distance-1e-5*this.model.size?a&&{...a,pane:s}:{...this.model.placeOnCut(l),pane:s}}};var wb="Arrows turn, with Shift they move; + and \u2212 zoom, Home shows all, [ and ] go to the step before and behind.";function Eb(i){let t=10**Math.floor(Math.log10(i));return t*[5,2,1].find(e=>e*t<=i*(1+1e-12))}function am(i,t,e){let n=-1;for(let s=0;s<i.length;++s)t[s]&&i[s]===i[s]&&(n<0||e*i[s]<e*i[n])&&(n=s);return n}var ol=class{constructor(t,e,n,{fields:s,displacement:r,solver:o}){this.header=t,this.blobs=n,this.model=e,this.fields=s,this.displacement=r,this.solver=o,this.steps=t.steps.length?t.steps:[{label:"no step",time:null}],this.step=this.steps.length-1,this.field=s.find(a=>a.name==="nodal-stress")??r??s[0],this.component=this.field.start,this.factor=0,this.rangeOf="step",this.compares=!!t.compared,this.sides=[],this.shown=[],this.picked=[],this.turn=0,this.makeElements()}async start(){this.view=new rl(this.canvas,this.model,()=>this.placeMarks());let t=matchMedia("(prefers-color-scheme: dark)"),e=()=>this.view.setInk(t.matches);t.addEventListener("change",()=>(e(),this.showHistory())),e(),this.lines.value=this.model.edges.length>6e4?"outline":"mesh",this.view.showLines(this.lines.value),await this.update()}makeElements(){this.canvas=rt("canvas",{tabindex:0,role:"img","aria-label":"Model with its result","aria-describedby":"keys readout"}),this.marks=rt("div.marks",{"aria-hidden":"true"}),this.titles=rt("div.titles"),this.bars=rt("div.bars"),this.readout=rt("p.readout",{id:"readout",role:"status"},"Point at the model"),this.extremes=rt("p.extremes",{"aria-live":"polite"}),this.listenTo(this.canvas);let t=rt("div.stage",{},this.canvas,this.titles,this.marks,this.bars,this.readout);this.element=rt("section.model",{id:"model","aria-label":"Model"},t,this.makeControls()),this.makeHistory(),this.makeWorst()}makeControls(){return this.fieldChoice=Qs(this.fields.map((t,e)=>({value:String(e),text:t.title})),String(this.fields.indexOf(this.field)),t=>this.choose(this.fields[Number(t)])),this.componentChoice=Qs([],"",t=>this.choose(this.field,t)),this.fillComponents(),rt("form.controls",{onsubmit:t=>t.preventDefault(),"aria-label":"What is shown"},_i("Field",this.fieldChoice),_i("Component",this.componentChoice),this.makeStepControls(),this.makeDeformation(),this.makeCut(),this.makeLook(),this.makeRange(),this.extremes,this.makeFind(),this.makeParts(),rt("p.hint",{id:"keys"},`On the model: ${wb}`))}fillComponents(){yl(this.componentChoice,this.field.components.map(t=>({value:t,text:t})),this.component)}makeStepControls(){let t=this.steps.length-1;return this.stepSlider=rt("input",{type:"range",min:0,max:t,step:1,value:this.step,disabled:t===0,oninput:()=>this.goToStep(Number(this.stepSlider.value))}),this.stepText=rt("output",{for:"step"}),this.stepSlider.id="step",rt("div.control",{},rt("label",{for:"step"},"Step ",this.stepText),this.stepSlider)}makeDeformation(){if(!this.displacement)return null;this.factorInput=rt("input",{type:"number",step:"any",value:0,onchange:()=>this.deform(Number(this.factorInput.value)||0)});let t=rt("button",{type:"button",onclick:async()=>this.deform(await this.autoFactor())},"auto"),e=rt("button",{type:"button",onclick:()=>this.deform(0)},"none"),n=_i("Deformation, times",this.factorInput);return n.append(t,e),n.classList.add("row"),n}makeCut(){this.cutAxis=Qs(["none","x","y","z","-x","-y","-z"].map(e=>({value:e,text:e==="none"?"none":`along ${e}`})),"none",()=>this.cut()),this.cutPlace=rt("input",{type:"range",min:0,max:1e3,value:500,disabled:!0,oninput:()=>this.cut(),"aria-label":"Place of the cut"}),this.cutText=rt("output"),this.cutHint=rt("p.hint",{role:"status"});let t=_i("Cut",this.cutAxis);return t.append(this.cutPlace,this.cutText,this.cutHint),t}makeLook(){let t=om.map(e=>rt("button",{type:"button",onclick:()=>this.view.look(e)},e));return this.lines=Qs([{value:"mesh",text:"mesh"},{value:"outline",text:"outline"},{value:"none",text:"none"}],"outline",e=>this.view.showLines(e)),rt("div.control",{},rt("div.row",{role:"group","aria-label":"Look at the model from"},...t),_i("Lines",this.lines))}makeRange(){this.rangeChoice=Qs([{value:"step",text:"of this step"},{value:"all",text:"of all steps"},{value:"own",text:"given"}],"step",e=>{this.rangeOf=e;for(let n of this.rangeInputs)n.disabled=e!=="own";this.update()}),this.rangeInputs=["Least colour","Greatest colour"].map(e=>rt("input",{type:"number",step:"any","aria-label":e,disabled:!0,onchange:()=>this.update()}));let t=_i("Colours over the range",this.rangeChoice);return t.append(rt("div.row",{},...this.rangeInputs)),t}makeFind(){let t=rt("input",{type:"text",inputmode:"numeric",onkeydown:n=>{n.key==="Enter"&&this.find(t.value)}}),e=_i("Go to node",t);return this.findText=rt("p.hint",{role:"status"}),e.append(rt("button",{type:"button",onclick:()=>this.find(t.value)},"Go"),this.findText),e.classList.add("row"),e}makeParts(){this.parts=new Va(this.model,{onparts:()=>{this.view.showParts(),this.update(),this.showNodeSets()},onnodes:()=>this.showNodeSets()});let t=this.model.parts.length>1||this.model.nodeSets.length>0;return rt("details",{open:t},rt("summary",{},"Parts and sets"),this.parts.place)}async showNodeSets(){let t=this.discTurn=(this.discTurn??0)+1,e=this.parts.shownNodeSets(),n=e.length?await this.model.setNodes():[];if(t!==this.discTurn)return;let{points:s}=this.model.visible(),[r,o]=[[],[]];for(let{points:[a,l],ink:c}of e)for(let u of n.subarray(a,a+l))s[u]&&(r.push(u),o.push(...c));this.view.showDiscs(r,o)}qualityButtons(){let t=[],e=(n,s)=>t.push(rt("button",{type:"button",onclick:()=>{s(),this.element.scrollIntoView()}},n)," ");for(let n of this.fields)/-error($|-)/.test(n.name)&&e(`Error measure: ${n.name}`,()=>this.choose(n)),/-spread($|-)/.test(n.name)&&e(`Spread at nodes: ${n.name}`,()=>this.choose(n));if(!this.compares)for(let n of this.solver.keys())e(`Ours beside the solver\u2019s: ${n.name}`,()=>{this.beside=n,this.choose(n,void 0,!0)});return t.length?t:["There is no measure of quality in the page."]}makeHistory(){this.chartPlace=rt("div.chart"),this.chart=new nl(this.chartPlace),this.pickedList=rt("ul.picked"),this.historyTable=rt("div"),this.history=Us("history","History",rt("p.hint",{},"Click on the model, or go to a node, to follow its value over the steps."),this.pickedList,this.chartPlace,rt("details",{},rt("summary",{},"As a table"),this.historyTable))}makeWorst(){let{compared:t}=this.header;if(!t)return;let e=t.worst.map(n=>[n.field===null?n.place:rt("button.link",{type:"button",onclick:()=>this.showWorst(n)},n.place),n.kind,n.component,n.step,n.first,n.second,Ye(n.distance),Ye(n.excess)]);this.worst=Us("worst","Worst places",rt("p",{},t.summary),...e.length?[Ei("Differences, the worst first",["place","kind","component","step",...t.titles,"apart","times what is allowed"],e)]:[],...t["one-sided"].length?[Ei("Blocks of one side alone",["kind","block","records","in"],t["one-sided"].map(n=>[n.kind,n.block,n.records,n.in]))]:[])}choose(t,e,n=!1){return n||(this.beside=null),this.field=t,this.component=e??(t.components.includes(this.component)&&this.component!=="value"?this.component:t.start),t.components.includes(this.component)||(this.component=t.start),this.fieldChoice.value=String(this.fields.indexOf(t)),this.fillComponents(),this.update()}goToStep(t){return this.step=Math.max(0,Math.min(this.steps.length-1,t)),this.stepSlider.value=this.step,this.update()}deform(t){return this.factor=t,this.factorInput.value=t,this.update()}async autoFactor(){let t=await this.displacement.columns(this.step);if(!t)return 0;let e=0;for(let n=0;n<t[0].length;++n)e=Math.max(e,Math.hypot(t[0][n],t[1][n],t[2][n])||0);return e>0?Eb(.1*this.model.size/e):0}async cut(){let t=this.cutAxis.value;if(this.cutPlace.disabled=t==="none",t==="none")this.cutText.textContent="",this.cutHint.textContent="";else if(await this.loadInside(),t!==this.cutAxis.value)return;let e=this.findPlane(t),n=!!(e&&this.model.section);n!==this.model.seesInside&&(this.model.seesInside=n,await this.update(),t!==this.cutAxis.value)||this.view.cut(e)}findPlane(t){if(t==="none")return null;let e="xyz".indexOf(t.at(-1)),n=t.startsWith("-")?-1:1,s=Number(this.cutPlace.value)/1e3,r=this.model.least[e]+s*(this.model.greatest[e]-this.model.least[e]),o=[0,0,0,n*r];return o[e]=n,this.cutText.textContent=`${"xyz"[e]} = ${Ye(r+this.model.origin[e])}`,o}async loadInside(){return this.model.hasSolids?this.header.inside?(this.insideIsRead??=this.readInside(),await this.insideIsRead,!0):(this.cutHint.textContent="The inside of the solids is not in this page: a cut shows no section. One with fewer steps or kinds may have room for it; quilon serve shows it.",!1):!1}async readInside(){this.cutHint.textContent="Reading the inside \u2026",await this.model.loadInside(this.blobs,this.header.inside),this.blobs.hasInside=!0,await this.update(),this.cutHint.textContent=""}listSides(){if(this.compares){let[e,n]=this.header.compared.titles,[s,r]=[0,1].map(o=>({field:this.field,side:o}));return[{title:e,...s},{title:n,...r},{title:"difference",field:new Jr(s,r,"difference"),side:0}]}let t=this.beside&&this.solver.get(this.beside);if(t){let[e,n]=[this.field,t].map(s=>({field:s,side:0}));return[{title:"ours",...e},{title:"the solver\u2019s",...n},{title:"the solver\u2019s less ours",field:new Jr(e,n,"difference"),side:0}]}return[{title:"",field:this.field,side:0}]}async update(){let t=++this.turn,e=this.step,n=this.listSides(),[s,r]=await Promise.all([Promise.all(n.map(({field:a,side:l})=>a.values(e,this.component,l))),Promise.all(n.map(({side:a})=>this.displacement?.columns(e,this.displacementSide(a,e))??null))]),o=await this.makeScales(n,s);t===this.turn&&(this.sides=n,this.view.panes.length!==n.length&&this.view.setPanes(n.length),this.shown=n.map(({field:a},l)=>({values:s[l],ofElements:a.ofElements,scale:o[l]})),n.forEach(({field:a},l)=>{let c=this.view.panes[l];c.deform(this.factor===0?null:r[l],this.factor),c.colour(a.ofElements,s[l],o[l])}),this.describe(),this.view.draw(),await this.showHistory())}displacementSide(t,e){return this.displacement.has(e,t)?t:0}async makeScales(t,e){let{points:n,elements:s}=this.model.visible(),r=await Promise.all(t.map(async({field:l,side:c},u)=>{let f=l.ofElements?s:n,h=[1/0,-1/0],d=_=>{if(_)for(let x of[1,-1]){let m=am(_,f,x);m>=0&&Number.isFinite(_[m])&&([h[0],h[1]]=[Math.min(h[0],_[m]),Math.max(h[1],_[m])])}};if(d(e[u]),this.rangeOf==="all")for(let _=0;_<this.steps.length;++_)d(await l.values(_,this.component,c));return h[0]<=h[1]?h:[0,0]}));if(r.length>1){let l=[Math.min(r[0][0],r[1][0]),Math.max(r[0][1],r[1][1])];r[0]=r[1]=l}let[o,a]=this.rangeInputs.map(l=>l.value===""?NaN:Number(l.value));if(this.rangeOf==="own"&&o<a)for(let l=0;l<Math.min(2,r.length);++l)r[l]=[o,a];else this.rangeOf!=="own"&&this.rangeInputs.forEach((l,c)=>l.value=Number(r[0][c].toPrecision(6)));return r.map(l=>new ka(l))}describe(){let{label:t,time:e,quantity:n}=this.steps[this.step],s=e===null?"":`, ${n??"time"} ${Ye(e)}`;this.stepText.textContent=`${this.step+1} of ${this.steps.length}: ${t}${s}`,this.stepSlider.setAttribute("aria-valuetext",this.stepText.textContent);let r=`${this.field.title}${this.component==="value"?"":` ${this.component}`}`;this.canvas.setAttribute("aria-label",`Model with ${r}, ${t}${s}`),In(this.titles,...this.sides.map(({title:o})=>rt("div",{},o?rt("span",{},o):r,...o?[rt("small",{},r)]:[]))),In(this.bars,...this.shown.map(o=>this.makeBar(o.scale))),this.findExtremes()}makeBar(t){let[e,n]=t.range,s=n-e,r=rt("canvas",{width:1,height:256,"aria-hidden":"true"}),o=r.getContext("2d");for(let c=0;c<256;++c)o.fillStyle=t.css(n-c/255*s),o.fillRect(0,c,1,1);let l=(s>0?[n,...Td(t.range,5).filter(c=>c-e>.06*s&&n-c>.06*s).reverse(),e]:[e]).map(c=>{let u=rt("span",{},Ye(Math.abs(c)<1e-9*s?0:c));return u.style.top=`${s>0?100*(n-c)/s:50}%`,u});return rt("div.bar",{role:"img","aria-label":`Colours from ${Ye(e)} to ${Ye(n)}`},r,...l)}findExtremes(){let{points:t,elements:e}=this.model.visible();this.extremeRows=this.shown.map(({values:a,ofElements:l})=>a?[1,-1].map(c=>am(a,l?e:t,c)):[-1,-1]);let{values:n,ofElements:s}=this.shown[0],[r,o]=this.extremeRows[0];this.extremes.textContent=n?r<0?"Nothing that is shown has a value.":`${this.model.seesInside?"Inside and out":"On the outside"}, least ${Ye(n[r])} at ${this.nameOf(r,s)}, greatest ${Ye(n[o])} at ${this.nameOf(o,s)}.`:"This step has no values of the field.",In(this.marks,...this.extremeRows.flatMap(([a,l],c)=>[[a,"least"],[l,"greatest"]].filter(([u])=>u>=0).map(([u,f])=>{let h=this.shown[c],d=rt(`div.mark.${f}`,{},`${f==="least"?"\u25BD":"\u25B3"} ${Ye(h.values[u])}`);return d.place=()=>this.placeOf(u,h.ofElements,c),d.rest=()=>this.restOf(u,h.ofElements),d.pane=c,d}))),this.ring=rt("div.ring",{hidden:!0}),this.marks.append(this.ring)}nameOf(t,e){return e?`element ${this.model.elementIds[t]}`:`node ${this.model.ids[t]}`}restOf(t,e){return e?this.model.middleOf(t,this.model.points):this.model.pointAt(t)}placeOf(t,e,n){let{places:s}=this.view.panes[n];return e?this.model.middleOf(t,s):Array.from(s.subarray(3*t,3*t+3))}placeMarks(){let t=this.view.areas();for(let e of this.marks.children){if(!e.place)continue;e.known??=e.place();let{x:n,y:s}=this.view.project(e.known,e.pane),{left:r,top:o,width:a,height:l}=t[e.pane];e.hidden=n<r||n>r+a||s<o||s>o+l||this.isCutOff(e),e.style.transform=`translate(${n}px, ${s}px)`}[...this.titles.children].forEach((e,n)=>{Object.assign(e.style,{left:`${t[n].left}px`,top:`${t[n].top}px`,width:`${t[n].width}px`})}),[...this.bars.children].forEach((e,n)=>{Object.assign(e.style,{left:`${t[n].left+12}px`,top:`${t[n].top+(t.length>1?60:44)}px`,height:`${Math.min(260,t[n].height*(t.length>1?.28:.6))}px`})})}isCutOff(t){let{plane:e}=this.view;return e?(t.knownRest??=t.rest(),e[0]*t.knownRest[0]+e[1]*t.knownRest[1]+e[2]*t.knownRest[2]>e[3]):!1}listenTo(t){t.addEventListener("pointermove",e=>this.hover(e.offsetX,e.offsetY)),t.addEventListener("pointerdown",e=>this.pressed=[e.offsetX,e.offsetY]),t.addEventListener("pointerup",e=>{Math.hypot(e.offsetX-this.pressed?.[0],e.offsetY-this.pressed?.[1])<4&&this.pick(e.offsetX,e.offsetY)}),t.addEventListener("keydown",e=>this.key(e))}hover(t,e){this.pointer=[t,e],!this.isHovering&&(this.isHovering=!0,requestAnimationFrame(()=>{this.isHovering=!1,this.tell(this.view.pick(...this.pointer))}))}tell(t){if(!t){this.readout.textContent="Point at the model",this.ring.hidden=!0;return}let{point:e,element:n,pane:s,on:r}=t,{ofElements:o}=this.shown[s],a=o?n:e,c=(t.rest??this.model.pointAt(e)).map((_,x)=>Ye(_+this.model.origin[x])),u=r?`${this.nameOf(n,!0)}, on the cut`:o?this.nameOf(n,!0):[this.nameOf(e,!1),...n===void 0?[]:[this.nameOf(n,!0)]].join(", "),f=this.tellValues(_=>r&&!o?this.valueOnCut(r,_):_[a]);this.readout.textContent=`${u}: ${f} at (${c.join(", ")})`;let{x:h,y:d}=this.view.project(r?this.placeOnCut(t):this.placeOf(a,o,s),s);this.ring.hidden=!1,this.ring.style.transform=`translate(${h}px, ${d}px)`}valueOnCut({solid:t,local:e},n){return this.model.section.at(t,e,[n])[0]}placeOnCut({on:{solid:t,local:e},rest:n,pane:s}){let{displacements:r}=this.view.panes[s];if(!r)return n;let o=this.model.section.at(t,e,r);return n.map((a,l)=>a+(this.factor*o[l]||0))}tellValues(t){return this.shown.map(({values:e},n)=>`${this.sides[n].title?`${this.sides[n].title} `:""}${e?Ye(t(e)):"no value"}`).join(" \xB7 ")}key(t){let{shiftKey:e}=t,n={ArrowLeft:[-5,0],ArrowRight:[5,0],ArrowUp:[0,5],ArrowDown:[0,-5]}[t.key];if(n&&e)this.view.pan(n[0]/100,n[1]/100);else if(n)this.view.turn(...n);else if(t.key==="+"||t.key==="=")this.view.zoom(1.2);else if(t.key==="-")this.view.zoom(1/1.2);else if(t.key==="Home")this.view.look("iso");else if(t.key==="[")this.goToStep(this.step-1);else if(t.key==="]")this.goToStep(this.step+1);else return;t.preventDefault()}pick(t,e){let n=this.view.pick(t,e);n&&this.follow(this.shown[n.pane].ofElements?{element:n.element}:{point:n.point})}follow(t){let e=n=>n.point===t.point&&n.element===t.element;return this.picked.some(e)||this.picked.push(t),this.showHistory()}async find(t){let e=Number(t),n=Number.isInteger(e)?await this.findNode(e):-1;this.findText.textContent=n<0?`No node ${t} ${this.header.inside?"in":"on the outside of"} the model`:"",n>=0&&this.goToPoint(n)}async findNode(t){let e=this.model.findNode(t);return e>=0||!this.header.inside?e:(await this.loadInside(),this.model.findNode(t))}async goToNode(t){this.element.scrollIntoView();let e=await this.findNode(t);e>=0?this.goToPoint(e):this.readout.textContent=`Node ${t} is inside the model`}goToPoint(t){this.view.flyTo(this.placeOf(t,!1,0)),this.field.ofElements||this.follow({point:t}),this.readout.textContent=`node ${this.model.ids[t]}`+(this.field.ofElements?"":`: ${this.tellValues(e=>e[t])}`)}async showWorst(t){this.step=t.position,this.stepSlider.value=t.position;let e=this.fields.find(({name:r})=>r===t.field);await this.choose(e,e.components.includes(t.component)?t.component:void 0),this.element.scrollIntoView();let n=()=>(e.ofElements?this.model.elementIds:this.model.ids).indexOf(t.id);n()<0&&await this.loadInside();let s=n();if(s<0){this.readout.textContent=`${t.place} is inside the model`;return}this.view.flyTo(this.placeOf(s,e.ofElements,0)),this.tell(e.ofElements?{element:s,point:this.pointOf(s),pane:0}:{point:s,pane:0}),await this.follow(e.ofElements?{element:s}:{point:s})}pointOf(t){let e=this.model.triangleElements.indexOf(t);if(e>=0)return this.model.triangles[3*e];let n=this.model.beamElements.indexOf(t);return n>=0?this.model.beams[2*n]:this.model.pointsInside(t)[0]}async showHistory(){let t=this.field.ofElements?"element":"point",e=this.picked.filter(c=>c[t]!==void 0),n=this.turn,s=[];for(let{field:c,side:u,title:f}of e.length?this.sides:[]){let h=e.map(d=>({label:`${f?`${f}, `:""}${this.nameOf(d[t],c.ofElements)}`,values:[],row:d[t]}));for(let d=0;d<this.steps.length;++d){let _=await c.values(d,this.component,u);for(let x of h){let m=_?_[x.row]:NaN;x.values.push(Number.isFinite(m)?m:null)}}s.push(...h)}if(n!==this.turn)return;let r=this.steps.map(({time:c})=>c),o=r.every((c,u)=>typeof c=="number"&&(u===0||c>r[u-1])),a=o?this.steps[0].quantity??"time":"step",l=o?r:r.map((c,u)=>u+1);this.chart.show(a,l,s),In(this.pickedList,...e.map(c=>rt("li",{},this.nameOf(c[t],this.field.ofElements)," ",rt("button.link",{type:"button","aria-label":`forget ${this.nameOf(c[t],this.field.ofElements)}`,onclick:()=>{this.picked=this.picked.filter(u=>u!==c),this.showHistory()}},"forget")))),In(this.historyTable,...s.length?[Ei("Values over the steps",[a,...s.map(c=>c.label)],l.map((c,u)=>[Ye(c),...s.map(f=>f.values[u]===null?"":Ye(f.values[u]))]))]:[])}};function Tb(i){let t=(e,n)=>rt("a",{href:`#${e}`},n);return rt("header",{},rt("h1",{},i.title),rt("p",{},i.compared?`Compared: ${i.compared.titles.join(", ")}`:Ad(i.facts)),rt("nav",{"aria-label":"Sections"},t("model","Model"),t("history","History"),...i.compared?[t("worst","Worst places")]:[],t("quality","Quality"),t("blocks","Blocks"),t("origin","Origin")))}function Ab(i,t){let{facts:e}=i;return Us("quality","Quality",rt("p",{},...t.qualityButtons()),rt("h3",{},"Averages beside the solver\u2019s own"),Cd(e.deviations),...i.balance?[rt("h3",{},"Balance of forces"),Rd(i.balance,n=>t.goToNode(n))]:[])}async function Cb(){let i=JSON.parse(document.getElementById("header").textContent);document.title=i.title;let t=rt("p.loading",{role:"status"},"Reading the model \u2026"),e=rt("main",{},t);document.body.append(rt("a.skip",{href:"#model"},"To the model"),Tb(i),e);try{let n=new Io(i),s=await Ba.load(n,i.model),r=new ol(i,s,n,ku(n,i));In(e,r.element,r.history,...i.compared?[r.worst]:[],Ab(i,r),Us("blocks","Blocks",Pd(i.facts.blocks)),Us("origin","Origin",Dh(i.facts.imports),...i.compared?[rt("h3",{},i.compared.titles[1]),Dh(i.compared.imports)]:[],rt("p",{},`Written by ${i.program}. Values have ${i.bits===32?"seven digits":"16 bits"}.`))),await r.start(),document.body.dataset.state="ready"}catch(n){throw t.textContent=`The page cannot be shown: ${n.message}`,t.setAttribute("role","alert"),In(e,t),document.body.dataset.state="failed",n}}Cb();})();
