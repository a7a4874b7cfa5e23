// A flat colour in each quarter of the picture, all opaque and exact in 8 bits.
#version 330 core
in vec2 beaconUV; // 0..1, from the lower left
out vec4 FragColor;

void main() {
    vec3 lower = beaconUV.x < 0.5 ? vec3(30.0, 60.0, 200.0) : vec3(240.0, 200.0, 10.0);
    vec3 upper = beaconUV.x < 0.5 ? vec3(220.0, 40.0, 50.0) : vec3(20.0, 180.0, 90.0);
    FragColor = vec4((beaconUV.y < 0.5 ? lower : upper) / 255.0, 1.0);
}
